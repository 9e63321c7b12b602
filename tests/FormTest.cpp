// The form as it lies on screen: what stands where, what the keys reach, how its list sorts, and what the procedures
// show of a node.
#include "editor/BusinessRules.h"
#include "editor/DirectoryListEvents.h"
#include "editor/History.h"
#include "form/DirectoryRows.h"
#include "form/ModuleState.h"
#include "platform/shell/SavedSettings.h"
#include "platform/ui/ListItems.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/Screen.h"
#include "support/BareForm.h"
#include "support/BoxScript.h"
#include "support/Cases.h"
#include "support/SampleDatabase.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QScopeGuard>
#include <QSettings>
#include <QSqlDatabase>
#include <QTemporaryDir>
#include <QToolTip>

using namespace qor;

namespace {

/// In the order in which the Tab key reaches them while all of them are shown and enabled.
const QStringList tabOrder =
    u"cmdFirst cmdPrevious cmbNode cmdNext cmdLast txtDescription txtAccessCode cmbMSGNodeNumber cmbUsePasswords "
    "txtCSVFilename cmdOpenCSVFilename LVDirectory txtLastName txtFirstName txtExtension cmbPromptNumber txtPassword "
    "cmdDirAdd cmdDirInsert cmdDirRemove cmdDirEdit cmdDirSaveList cmdDirUp cmdDirDown cmdOK cmdCancel cmdApply"_s
        .split(u' ');

void Show(QWidget& form)
{
    form.show();
    QVERIFY(QTest::qWaitForWindowActive(&form));
}

/// Rows that have a text from "b,A,a" in all their sub-items.
void Fill(ListView& list, const QString& texts)
{
    ResetDirectoryListView(list);
    std::vector<ListRow> rows;
    for (const QString& text : texts.split(u',', Qt::SkipEmptyParts))
        rows.push_back(EntryRow(static_cast<int>(rows.size()) + 1, {text, text, text, text, text}));
    list.Items().Append(std::move(rows));
}

/// The rows in order, what they are sorted by and how many columns there are.
QString StateOf(const ListView& list)
{
    const ListItems& items = list.Items();
    QStringList texts;
    for (int row = 0; row < items.RowCount(); ++row)
        texts << EntryText(list, row, DirectoryColumn::LastName);
    const QString order = items.Order() == SortOrder::Ascending ? u"up"_s : u"down"_s;
    const QString sorted = items.Sorted() ? u"%1 by %2"_s.arg(order).arg(items.SortKey()) : u"unsorted"_s;
    return u"%1 %2 of %3"_s.arg(texts.join(u','), sorted).arg(items.ColumnCount());
}

/// The selector and what it selects, the header, the position, the buttons that lead anywhere.
QString ShownOn(const EditorForm& form)
{
    QStringList items;
    for (int i = 0; i < form.cmbNode->ListCount(); ++i)
        items << form.cmbNode->List(i);
    QString buttons;
    for (const QWidget* button : {form.cmdFirst, form.cmdPrevious, form.cmdNext, form.cmdLast})
        buttons += button->isEnabled() ? button->objectName().sliced(3).first(1) : u"-"_s;
    return u"%1@%2|%3|%4|%5|%6|%7|%8"_s.arg(items.join(u','), form.cmbNode->currentData().toString(),
                                            form.txtDescription->text(), form.txtAccessCode->text(),
                                            form.cmbUsePasswords->Text(), form.cmbMSGNodeNumber->Text(),
                                            form.lblRecordPosition->text(), buttons);
}

bool CanBeRead(const QColor& ink, const QColor& background)
{
    return std::abs(qGray(ink.rgb()) - qGray(background.rgb())) >= 80;
}

} // namespace

class FormTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { InstallErrorBox(); }
    void cleanup() { QCOMPARE(QSqlDatabase::connectionNames(), QStringList()); }

    // Nothing lies over another control or beyond its frame, but for the fields that are laid over a row.
    void nothingIsCovered()
    {
        BareForm form;
        form.HideEntryEditors();
        Show(form);
        for (const QWidget* frame :
             std::initializer_list<QWidget*>{form.Frame1->parentWidget(), form.Frame1, form.fraDirectory}) {
            const auto children = frame->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
            for (const QWidget* one : children) {
                QVERIFY2(one->isHidden() || frame->rect().contains(one->geometry()), qPrintable(one->objectName()));
                for (const QWidget* other : children) {
                    const QRect common = one->geometry() & other->geometry();
                    const bool meet = one < other && one->isVisible() && other->isVisible() &&
                                      std::min(common.width(), common.height()) > 1; // edges may lie on one line
                    QVERIFY2(!meet, qPrintable(one->objectName() + u' ' + other->objectName()));
                }
            }
        }
    }

    void nothingIsClipped()
    {
        BareForm form;
        form.lblRecordPosition->setText(u"100 of 100"_s);
        form.SetEditMode(true);
        for (const QLabel* label : form.Frame1->findChildren<QLabel*>()) {
            const QSize needed = label->sizeHint();
            QVERIFY2(needed.width() <= label->width() && needed.height() <= label->height(),
                     qPrintable(label->objectName()));
        }
        for (const QPushButton* button : form.findChildren<QPushButton*>()) {
            const QSize needed = button->fontMetrics().size(Qt::TextShowMnemonic, button->text());
            QVERIFY2(needed.width() + 6 <= button->width() && needed.height() <= button->height(),
                     qPrintable(button->objectName()));
        }
    }

    void keysReachEveryControl()
    {
        BareForm form;
        for (const QString& name : tabOrder) {
            auto* control = form.findChild<QWidget*>(name);
            control->setEnabled(true);
            control->show();
            QVERIFY2(!QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name).isEmpty(),
                     qPrintable(name));
        }
        Show(form);
        form.cmdFirst->setFocus();
        QStringList visited;
        for (qsizetype i = 0; i <= tabOrder.size(); ++i) {
            visited << form.focusWidget()->objectName();
            QTest::keyClick(form.focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(visited, tabOrder + QStringList{u"cmdFirst"_s});
    }

    // From controls that use these keys themselves, too.
    void enterAndEscape()
    {
        BareForm form;
        Show(form);
        Fill(*form.LVDirectory, u"a"_s);
        form.LVDirectory->SetSelected(0, true);
        QString clicked;
        connect(form.cmdOK, &QPushButton::clicked, this, [&] { clicked += u"OK "_s; });
        connect(form.cmdCancel, &QPushButton::clicked, this, [&] { clicked += u"Cancel "_s; });
        for (QWidget* control :
             std::initializer_list<QWidget*>{form.cmbMSGNodeNumber, form.cmbNode, form.LVDirectory}) {
            control->setFocus();
            QTest::keyClick(control, Qt::Key_Return);
            QTest::keyClick(control, Qt::Key_Escape);
        }
        QCOMPARE(clicked, u"OK Cancel "_s.repeated(3));
    }

    void columnClicksSort()
    {
        const auto sorted = [](const QString& rows, std::initializer_list<int> columns) {
            BareForm form;
            History history(form);
            DirectoryListEvents events(form, history);
            Fill(*form.LVDirectory, rows);
            for (const int column : columns)
                events.LVDirectory_ColumnClick(column);
            return StateOf(*form.LVDirectory);
        };
        QCOMPARE(sorted(u"b,A,a,B"_s, {1, 1}), u"b,B,A,a down by 1 of 6"_s);
        QCOMPARE(sorted(u"b,A,a,B"_s, {2, 2, 2}), u"A,a,b,B up by 2 of 6"_s);
        QCOMPARE(sorted(u"9,10"_s, {5}), u"10,9 up by 5 of 6"_s);
        QCOMPARE(sorted(u"-1, 2 ,1e1,1.5,0"_s, {3}), u"1e1, 2 ,1.5,0,-1 down by 6 of 7"_s);
        QCOMPARE(sorted(u"9,10,1"_s, {4, 1, 4, 1}), u"1,10,9 up by 1 of 7"_s);
        QCOMPARE(sorted(u"9,10"_s, {1, 1, 0}), u"9,10 down by 1 of 6"_s);
        QCOMPARE(sorted({}, {3}), u" down by 6 of 7"_s);
    }

    void textsThatAreNoNumber()
    {
        BareForm form;
        ListView& list = *form.LVDirectory;
        History history(form);
        DirectoryListEvents events(form, history);
        Fill(list, u"1,x,20,3"_s);
        events.LVDirectory_ColumnClick(1);
        const BoxScript boxes{
            ErrorReport(u"LVDirectory_ColumnClick"_s, u"Extension of row 4 is \"x\", which is not a number*"_s)};
        events.LVDirectory_ColumnClick(3);
        QCOMPARE(StateOf(list), u"1,20,3,x unsorted of 7"_s);
        for (const int hidden : {0, 5, 6})
            QCOMPARE(list.columnWidth(hidden), 0);
    }

    // What is done to the sample, and the node (0 is a new one).
    void nodesOnTheForm_data()
    {
        AddCases(
            {{"first", u">7"_s, u"DIR 7,DIR 12,DIR 20,DIR 31@7|Staff|4711|Yes|5|1 of 4|--NL"_s},
             {"last, Null", u">31"_s, u"DIR 7,DIR 12,DIR 20,DIR 31@31|||No|1|4 of 4|FP--"_s},
             {"only one", u"DELETE FROM Node_DIR WHERE NodeNumber <> 7>7"_s, u"DIR 7@7|Staff|4711|Yes|5|1 of 1|----"_s},
             {"new", u"UPDATE Node_DIR SET NodeNumber = -3 WHERE NodeNumber = 31>0"_s,
              u"DIR -3,DIR 0,DIR 7,DIR 12,DIR 20@0|New directory||No|1|2 of 5|FPNL"_s}});
    }
    void nodesOnTheForm()
    {
        QFETCH(QString, given);
        const SampleDatabase sample;
        if (!given.startsWith(u'>'))
            sample.Run(given.section(u'>', 0, -2));
        const qint16 node = given.section(u'>', -1).toShort();
        BareForm form;
        BusinessRules rules;
        form.SetConfigID(1);
        form.SetPartitionID(1);
        QVERIFY(rules.LoadPromptMSGNodeNumber(form));
        rules.IsNewNode = node == 0;
        rules.LoadExistingNodesInRecordSelector(form, node);
        QVERIFY(rules.LoadData(form, node));
        QTEST(ShownOn(form), "expected");
        const BoxScript boxes{Notice(u"DIR 8 doesn't exist."_s)};
        QVERIFY(!rules.LoadData(form, 8));
        QVERIFY(!form.ShowsNode() && !form.cmdOK->isEnabled() && form.LVDirectory->Items().RowCount() == 0);
        QCOMPARE(form.cmdFirst->isHidden(), node == 0);
        QCOMPARE(form.lblLabel->y() == form.cmdFirst->y(), node == 0);
        form.show();
        QCOMPARE(form.StatusBar1->geometry().bottom(), form.rect().bottom());
    }

    void noMaximumOfMessageNodes()
    {
        const SampleDatabase sample;
        BareForm form;
        BusinessRules rules;
        form.SetConfigID(1);
        form.SetPartitionID(1);
        QVERIFY(rules.LoadPromptMSGNodeNumber(form));
        QCOMPARE(form.cmbPromptNumber->ListCount() + form.cmbMSGNodeNumber->ListCount(), 500);
        sample.Run(u"UPDATE Node_Type_Max SET Max_number = NULL"_s);
        QVERIFY(!rules.LoadPromptMSGNodeNumber(form));
        QCOMPARE(form.cmbPromptNumber->ListCount(), 0);
        QCOMPARE(form.cmbMSGNodeNumber->ListCount(), 250);
        QCOMPARE(rules.GetNextAvailableMSGNODENUMBER(form, false), qint16{0});
        QVERIFY(std::exchange(Module().PendingMessage, {}).startsWith(u"Please check the \"Max Number"_s));
    }

    void sizesComeBack()
    {
        const QTemporaryDir folder;
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path());
        const auto use = [](bool isNewNode, const QSize& size = {}) {
            BareForm form;
            if (isNewNode)
                form.CompactLayoutWithoutNavigation();
            form.show();
            const QString opened = u"%1x%2+%3 "_s.arg(form.width()).arg(form.height()).arg(form.LVDirectory->height());
            form.resize(size.isValid() ? size : form.size());
            form.hide();
            return opened + GetSetting(u"KELDAR+"_s, u"DIREditor"_s, u"FormSize"_s);
        };
        QCOMPARE(use(false), u"465x487+225 "_s);
        QCOMPARE(use(true), u"465x455+225 "_s);
        QCOMPARE(use(false, {600, 700}), u"465x487+225 600x700"_s);
        QCOMPARE(use(true, {500, 668}), u"600x668+438 500x700"_s);
        SaveSetting(u"KELDAR+"_s, u"DIREditor"_s, u"FormSize"_s, u"1x9999"_s);
        QVERIFY(use(false).startsWith(u"465x%1+"_s.arg(QGuiApplication::primaryScreen()->availableSize().height())));
    }

    void cutTexts()
    {
        BareForm form;
        form.txtDescription->Fill(u"W"_s.repeated(30));
        QHelpEvent hover(QEvent::ToolTip, {5, 5}, {5, 5});
        QCoreApplication::sendEvent(form.txtDescription, &hover);
        QCOMPARE(QToolTip::text(), form.txtDescription->text());
        form.ShowPosition(u"1150 of 1200"_s);
        QVERIFY(form.lblRecordPosition->sizeHint().width() <= form.lblRecordPosition->width());
    }

    void coloursCanBeRead()
    {
        BareForm form;
        ListView& list = *form.LVDirectory;
        Fill(list, u"\u2588\u2588\u2588\u2588\u2588"_s); // full blocks: plain colour
        list.Items().SetForeColor(0, 1, invalidRowColour);
        list.Items().SetForeColor(0, 2, soundRowColour);
        Show(form);
        const auto restore = qScopeGuard([before = QApplication::palette()] { QApplication::setPalette(before); });
        for (const QColor& background : {QColor(Qt::white), QColor(0x35, 0x35, 0x35)}) {
            QPalette palette(background, background);
            palette.setColor(QPalette::Base, background);
            QApplication::setPalette(palette);
            QTRY_COMPARE(list.palette().color(QPalette::Base), background);
            const QImage picture = list.viewport()->grab().toImage();
            const QPalette hint = form.lblCSVFormat->palette();
            QVERIFY(CanBeRead(hint.color(QPalette::WindowText), hint.color(QPalette::Window)));
            for (const int column : {1, 2}) {
                const QRect cell = list.visualRect(list.model()->index(0, column));
                const QColor ink = picture.pixelColor(cell.left() + 12, cell.center().y());
                QVERIFY2(CanBeRead(ink, background), qPrintable(ink.name()));
                QCOMPARE(ink.red() > ink.green() + 50, column == 1);
            }
        }
    }
};

QTEST_MAIN(FormTest)
#include "FormTest.moc"
