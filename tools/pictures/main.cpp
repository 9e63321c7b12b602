// pictures FOLDER PREFIX CSV-FILE [--dark]: drives the editor through its states and writes a picture of each;
// table.csv lies beside the file. It needs a sample database that nobody has open. Call it with --crash first, which
// ends the process in the middle of work, so that there is a draft.
#include "QOR_DIR_Node.h"

#include <cstdlib>
#include <deque>
#include <functional>
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QProgressDialog>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStyleFactory>
#include <QTableView>
#include <QTimer>

namespace {

using namespace Qt::StringLiterals;

QPalette DarkPalette()
{
    QPalette palette(QColor(45, 45, 48));
    palette.setColor(QPalette::Base, QColor(30, 30, 30));
    palette.setColor(QPalette::Text, Qt::white);
    palette.setColor(QPalette::WindowText, Qt::white);
    palette.setColor(QPalette::ButtonText, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(38, 110, 190));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(130, 130, 130));
    return palette;
}

/// A step does its work when the window that it waits for is the active modal one.
struct Step
{
    std::function<bool(QWidget&)> isFor;
    std::function<void(QWidget&)> run;
};

class Tour
{
public:
    Tour(QString folder, QString prefix, QString csvFile)
        : mFolder(std::move(folder)), mPrefix(std::move(prefix)), mCsvFile(std::move(csvFile))
    {
        PlanLock();
        TakeBox(u"box-restore"_s, QMessageBox::No);
        PlanEditor();
        PlanMenuAndFind();
        PlanCommit();
        PlanVersions();
        PlanImport();
        constexpr int lookEvery = 120; // ms
        QObject::connect(&mTimer, &QTimer::timeout, &mTimer, [this] { Look(); });
        mTimer.start(lookEvery);
    }

    bool Finished() const { return mSteps.empty(); }

private:
    void Look()
    {
        QWidget* popup = QApplication::activePopupWidget();
        QWidget* modal = popup ? popup : QApplication::activeModalWidget();
        if (!modal || mSteps.empty() || !mSteps.front().isFor(*modal))
            return;
        if (!popup)
            modal->activateWindow(); // which no window manager does here
        const Step step = std::move(mSteps.front());
        mSteps.pop_front();
        step.run(*modal);
    }

    static bool IsEditor(QWidget& window) { return window.windowTitle() == u"DIR Editor"_s; }
    static bool IsMenu(QWidget& window) { return qobject_cast<QMenu*>(&window) != nullptr; }
    static bool IsBox(QWidget& window) { return qobject_cast<QMessageBox*>(&window) != nullptr; }
    static bool IsFileDialog(QWidget& window) { return qobject_cast<QFileDialog*>(&window) != nullptr; }
    static bool IsWaiting(QWidget& window) { return qobject_cast<QProgressDialog*>(&window) != nullptr; }
    static bool IsVersions(QWidget& window) { return window.objectName() == u"dlgVersions"_s; }
    static bool IsQuestion(QWidget& window) { return window.findChild<QAbstractButton*>(u"cmdYesToAll"_s) != nullptr; }

    static void Click(QWidget& window, const QString& name)
    {
        // Queued, because a click may open the next window and return only after that.
        QTimer::singleShot(0, window.findChild<QAbstractButton*>(name), &QAbstractButton::click);
    }

    static QTableView& List(QWidget& editor) { return *editor.findChild<QTableView*>(u"LVDirectory"_s); }

    void Take(QWidget& window, const QString& name) const
    {
        window.grab().save(mFolder + u'/' + mPrefix + name + u".png"_s);
    }

    void Then(bool (*isFor)(QWidget&), std::function<void(QWidget&)> run) { mSteps.push_back({isFor, std::move(run)}); }
    void TakeBox(const QString& name, QMessageBox::StandardButton answer)
    {
        Then(IsBox, [this, name, answer](QWidget& window) {
            Take(window, name);
            dynamic_cast<QMessageBox&>(window).button(answer)->click();
        });
    }

    /// The first call finds the database locked.
    void PlanLock()
    {
        Then(IsWaiting, [this](QWidget& dialog) {
            Take(dialog, u"waiting"_s);
            dynamic_cast<QProgressDialog&>(dialog).cancel();
        });
    }

    void PlanEditor()
    {
        Then(IsEditor, [this](QWidget& editor) {
            Take(editor, u"list-mode"_s);
            Click(editor, u"cmdDirAdd"_s);
        });
        Then(IsEditor, [](QWidget& editor) { Click(editor, u"cmdDirAdd"_s); });
        Then(IsEditor, [this](QWidget& editor) {
            List(editor).clearSelection();
            Take(editor, u"red-rows"_s);
            List(editor).selectRow(4);
            Click(editor, u"cmdDirEdit"_s);
        });
        Then(IsEditor, [this](QWidget& editor) {
            Take(editor, u"edit-mode"_s);
            Click(editor, u"cmdDirEdit"_s);
        });
    }

    void OpenMenu()
    {
        Then(IsEditor, [](QWidget& editor) {
            QCoreApplication::postEvent(List(editor).viewport(),
                                        new QContextMenuEvent(QContextMenuEvent::Keyboard, {}, {}));
        });
    }

    void PlanMenuAndFind()
    {
        OpenMenu();
        Then(IsMenu, [this](QWidget& menu) {
            Take(menu, u"menu"_s);
            menu.close();
        });
        Then(IsEditor, [](QWidget& editor) {
            for (QAction* action : editor.findChildren<QAction*>()) {
                if (action->text().startsWith(u"Find..."))
                    action->trigger();
            }
        });
        Then(IsEditor, [this](QWidget& editor) {
            editor.findChild<QLineEdit*>(u"txtFind"_s)->setText(u"an"_s);
            editor.resize(editor.width() + 150, editor.height() + 120);
            Take(editor, u"find-larger"_s);
            QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, {});
            QCoreApplication::sendEvent(editor.findChild<QLineEdit*>(u"txtFind"_s), &escape);
            editor.resize(editor.minimumSize());
        });
    }

    void PlanCommit()
    {
        Then(IsEditor, [](QWidget& editor) { Click(editor, u"cmdApply"_s); });
        TakeBox(u"box-invalid-entry"_s, QMessageBox::Ok);
        Then(IsEditor, [](QWidget& editor) { Click(editor, u"cmdDirRemove"_s); });
        Then(IsEditor, [](QWidget& editor) { Click(editor, u"cmdDirRemove"_s); });
        Then(IsEditor, [](QWidget& editor) { Click(editor, u"cmdApply"_s); });
        Then(IsQuestion, [this](QWidget& dialog) {
            Take(dialog, u"box-missing-node"_s);
            Click(dialog, u"cmdStop"_s);
        });
    }

    void PlanVersions()
    {
        OpenMenu();
        Then(IsMenu, [](QWidget& menu) {
            QTimer::singleShot(0, menu.actions().constLast(), &QAction::trigger);
            menu.close();
        });
        Then(IsVersions, [this](QWidget& dialog) {
            Take(dialog, u"versions"_s);
            dialog.close();
        });
    }

    void Import(const QString& fileName)
    {
        Then(IsEditor, [](QWidget& editor) { Click(editor, u"cmdOpenCSVFilename"_s); });
        Then(IsFileDialog, [fileName](QWidget& window) {
            auto& dialog = dynamic_cast<QFileDialog&>(window);
            dialog.setDirectory(QFileInfo(fileName).path());
            dialog.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(fileName);
            QMetaObject::invokeMethod(&dialog, "accept", Qt::QueuedConnection);
        });
    }

    void PlanImport()
    {
        Import(QFileInfo(mCsvFile).path() + u"/table.csv"_s);
        TakeBox(u"box-table"_s, QMessageBox::Cancel);
        Import(mCsvFile);
        TakeBox(u"box-overwrite"_s, QMessageBox::Yes);
        TakeBox(u"box-import-report"_s, QMessageBox::Ok);
        Then(IsEditor, [](QWidget& editor) { Click(editor, u"cmdCancel"_s); });
        TakeBox(u"box-save-changes"_s, QMessageBox::No);
    }

    QString mFolder;
    QString mPrefix;
    QString mCsvFile;
    std::deque<Step> mSteps;
    QTimer mTimer;
};

void ShowEditor()
{
    IClassFactory* factory = nullptr;
    _BusinessRules* rules = nullptr;
    DllGetClassObject(CLSID_BusinessRules, IID_IClassFactory, reinterpret_cast<void**>(&factory));
    factory->CreateInstance(nullptr, IID__BusinessRules, reinterpret_cast<void**>(&rules));
    factory->Release();
    rules->ShowNodeEditor(1, 1, 7, nullptr);
    rules->Release();
}

/// Ends this process as soon as something is changed.
void CrashWhileEditing()
{
    QTimer timer;
    timer.callOnTimeout([] {
        QWidget* form = QApplication::activeModalWidget();
        if (!form)
            return;
        form->findChild<QAbstractButton*>(u"cmdDirAdd"_s)->click();
        std::_Exit(0);
    });
    timer.start(1);
    ShowEditor();
}

/// Opens the editor while another connection keeps everybody out.
void ShowEditorLocked()
{
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other"_s);
        other.setDatabaseName(qEnvironmentVariable("KELDAR_COMMON_APPDATA") +
                              u"/Quorvanta/KELDAR+/Database/NewDB.mdb"_s);
        other.open();
        other.exec(u"PRAGMA locking_mode = EXCLUSIVE"_s);
        other.exec(u"BEGIN EXCLUSIVE"_s);
        ShowEditor();
    }
    QSqlDatabase::removeDatabase(u"other"_s);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 4)
        return 2;
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    if (arguments.contains(u"--dark"_s))
        QApplication::setPalette(DarkPalette());

    if (arguments.contains(u"--crash"_s))
        CrashWhileEditing();
    const Tour tour(arguments[1], arguments[2], arguments[3]);
    ShowEditorLocked();
    ShowEditor();
    return tour.Finished() ? 0 : 1;
}
