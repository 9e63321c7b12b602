#include "Editor.h"

#include "QOR_DIR_Node.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPushButton>
#include <QTest>

namespace qor {

namespace {

void Require(bool condition, const char* reason)
{
    if (!condition)
        QTest::qFail(reason, __FILE__, __LINE__);
}

} // namespace

void CallLibrary(int config, int partition, int node)
{
    IClassFactory* factory = nullptr;
    _BusinessRules* rules = nullptr;
    DllGetClassObject(CLSID_BusinessRules, IID_IClassFactory, reinterpret_cast<void**>(&factory));
    factory->CreateInstance(nullptr, IID__BusinessRules, reinterpret_cast<void**>(&rules));
    factory->Release();
    rules->ShowNodeEditor(static_cast<std::int16_t>(config), static_cast<std::int16_t>(partition),
                          static_cast<std::int16_t>(node), nullptr);
    rules->Release();
}

void Editor::Open(int config, int partition, int node, const User& user, std::initializer_list<ExpectedBox> before)
{
    BoxScript boxes(before);
    Open(config, partition, node, user, boxes);
}

/// Twice: when a box has just been answered, what asked it goes on before the next time.
void Editor::Open(int config, int partition, int node, const User& user, BoxScript& boxes)
{
    int seen = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto* form = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        const bool isForm = form != nullptr && form->inherits("qor::Form");
        seen = isForm && form->isActiveWindow() ? seen + 1 : 0;
        if (isForm && seen == 0)
            form->activateWindow(); // as a window manager does behind a box
        if (seen < 2)
            return;
        timer.stop();
        Editor editor(*form, boxes);
        user(editor);
        editor.Leave();
    });
    timer.start(1);
    CallLibrary(config, partition, node);
    Require(DllCanUnloadNow() == S_OK, "the library counts objects that are gone");
    Require(!timer.isActive(), "the editor did not come");
}

QWidget& Editor::FindControl(const char* name) const
{
    auto* control = mForm.findChild<QWidget*>(QLatin1String(name));
    if (!control)
        qFatal("the form has no %s", name);
    return *control;
}

QLineEdit& Editor::Field(const char* name) const
{
    QWidget& control = FindControl(name);
    const auto* combo = qobject_cast<QComboBox*>(&control);
    return combo ? *combo->lineEdit() : *qobject_cast<QLineEdit*>(&control);
}

Editor& Editor::Click(const char* button)
{
    Require(Find(button).isVisible(), button);
    QTest::mouseClick(&Find(button), Qt::LeftButton);
    return *this;
}

Editor& Editor::ClickRow(int row, Qt::KeyboardModifiers modifiers, Qt::MouseButton button)
{
    List().scrollTo(List().model()->index(row, 2));
    QTest::mouseClick(List().viewport(), button, modifiers, CellRect(row, 2).center());
    return *this;
}

Editor& Editor::ClickHeader(int column, bool again)
{
    const QHeaderView& header = *List().horizontalHeader();
    const QPoint place(header.sectionViewportPosition(column) + 20, 8);
    if (again)
        QTest::mouseDClick(header.viewport(), Qt::LeftButton, {}, place); // the second press
    else
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, place);
    return *this;
}

Editor& Editor::Keys(const char* keys)
{
    QTest::keySequence(mForm.focusWidget(), QKeySequence(QLatin1String(keys)));
    const auto buttons = mForm.findChildren<QPushButton*>(); // a mnemonic presses its button for a moment
    Require(QTest::qWaitFor(
                [&] { return std::none_of(buttons.begin(), buttons.end(), std::mem_fn(&QPushButton::isDown)); }),
            "a button stays down");
    return *this;
}

/// Behind a box the form becomes the active window a moment later.
Editor& Editor::FocusOn(const char* control)
{
    mForm.activateWindow();
    Require(!IsOpen() || QTest::qWaitForWindowActive(&mForm), "the form does not become active");
    Find(control).show();
    Find(control).setFocus(Qt::TabFocusReason);
    return *this;
}

Editor& Editor::Type(const char* field, const QString& text)
{
    FocusOn(field).Field(field).selectAll();
    if (text.isEmpty())
        QTest::keyClick(&Field(field), Qt::Key_Backspace);
    else
        QTest::keyClicks(&Field(field), text);
    return *this;
}

Editor& Editor::Paste(const char* field, const QString& text)
{
    FocusOn(field).Field(field).selectAll();
    QGuiApplication::clipboard()->setText(text);
    QTest::keySequence(&Field(field), QKeySequence::Paste);
    return *this;
}

Editor& Editor::ChooseInMenu(const QString& text, const char* control)
{
    QTimer timer;
    timer.callOnTimeout([&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        timer.stop();
        for (QAction* action : menu->actions()) {
            if (action->text() == text)
                menu->setActiveAction(action);
        }
        QTest::keyClick(menu, menu->activeAction() ? Qt::Key_Return : Qt::Key_Escape);
    });
    timer.start(1);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
    QCoreApplication::sendEvent(control ? &Find(control) : List().viewport(), &event);
    return *this;
}

Editor& Editor::QueueRemoval()
{
    QCoreApplication::postEvent(&List(), new QKeyEvent(QEvent::KeyPress, Qt::Key_Delete, {}));
    return *this;
}

QString Editor::Text(const char* control) const
{
    const QWidget& shown = Find(control);
    return shown.property(qobject_cast<const QComboBox*>(&shown) ? "currentText" : "text").toString();
}

QStringList Editor::Rows() const
{
    QStringList rows;
    for (int row = 0; row < RowCount(); ++row) {
        QStringList texts;
        for (int column = 1; column <= 5; ++column)
            texts << Cell(row, column);
        rows << texts.join(u'|');
    }
    return rows;
}

QList<int> Editor::Selected() const
{
    QList<int> rows;
    for (int row = 0; row < RowCount(); ++row) {
        if (List().selectionModel()->isSelected(List().model()->index(row, 1)))
            rows << row;
    }
    return rows;
}

QString Editor::Red(int row) const
{
    QString cells;
    for (int column = 0; column <= 5; ++column) {
        const QVariant colour = List().model()->index(row, column).data(Qt::ForegroundRole);
        cells += colour.isValid() && colour.value<QColor>() == Qt::red ? u'r' : u'-';
    }
    return cells;
}

/// A form that stays open all the same would keep the test waiting.
void Editor::Leave()
{
    Expected();
    Require(QGuiApplication::overrideCursor() == nullptr, "the pointer is not as it was");
    if (!IsOpen())
        return;
    Require(Find("Frame1").isEnabled() && Find("StatusBar1").isHidden(), "the form is left as in a long operation");
    if (IsDirty() || Text("cmdDirEdit").contains(u"Off"))
        Expect(SaveQuestion(QMessageBox::No));
    Close().Expected();
    if (IsOpen())
        mForm.done(0);
}

bool CompareAt(int line, const QString& actual, const QString& expected)
{
    const QByteArray place = "the case in line " + QByteArray::number(line);
    return QTest::qCompare(actual, expected, place, "expected", __FILE__, __LINE__);
}

} // namespace qor
