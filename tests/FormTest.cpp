// The form as it lies on screen: what stands where, what the keys reach, how its list sorts, and what the procedures
// show of a node.
#include "editor/BusinessRules.h"
#include "editor/DirectoryListEvents.h"
#include "form/DirectoryRows.h"
#include "form/ModuleState.h"
#include "platform/ui/ListItems.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/Screen.h"
#include "support/BareForm.h"
#include "support/BoxScript.h"
#include "support/Cases.h"
#include "support/SampleDatabase.h"

#include <cmath>
#include <QAccessible>
#include <QScopeGuard>
#include <QSqlDatabase>

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
    const QString order = items.Order() == ListItems::SortOrder::Ascending ? u"up"_s : u"down"_s;
    const QString sorted = items.Sorted() ? u"%1 by %2"_s.arg(order).arg(items.SortKey()) : u"unsorted"_s;
    return u"%1 %2 of %3"_s.arg(texts.join(u','), sorted).arg(items.ColumnCount());
}

/// Configuration 1, partition 1 of the sample.
void Prepare(EditorForm& form)
{
    form.SetConfigID(1);
    form.SetPartitionID(1);
}

QString Selector(const EditorForm& form)
{
    QStringList items;
    for (int i = 0; i < form.cmbNode->ListCount(); ++i)
        items << form.cmbNode->List(i);
    return items.join(u',') + u'@' + form.cmbNode->currentData().toString();
}

QString Header(const EditorForm& form)
{
    QStringList buttons;
    for (const QWidget* button : {form.cmdFirst, form.cmdPrevious, form.cmdNext, form.cmdLast}) {
        if (button->isEnabled())
            buttons << button->objectName();
    }
    return u'|' + QStringList{form.txtDescription->text(),    form.txtAccessCode->text(),
                              form.cmbUsePasswords->Text(),   form.cmbMSGNodeNumber->Text(),
                              form.lblRecordPosition->text(), buttons.join(u' ')}
                      .join(u'|');
}

double Lightness(const QColor& colour)
{
    const auto linear = [](double part) { return part <= 0.04 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

/// How well one colour can be read on the other: from 1, not at all, to 21, black on white.
double Contrast(const QColor& one, const QColor& other)
{
    const auto [dark, light] = std::minmax({Lightness(one), Lightness(other)});
    return (light + 0.05) / (dark + 0.05);
}

} // namespace

class FormTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BoxScript> mBoxes;

private Q_SLOTS:
    void initTestCase() { InstallErrorBox(); }
    void init() { mBoxes = std::make_unique<BoxScript>(); }
    void cleanup()
    {
        mBoxes.reset();
        QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
    }

    void controlsAsTheyStart()
    {
        const BareForm form;
        QString lengths;
        for (const TextBox* box : {form.txtDescription, form.txtAccessCode, form.txtLastName, form.txtFirstName,
                                   form.txtExtension, form.txtPassword, form.txtCSVFilename})
            lengths += QString::number(box->maxLength()) + u' ';
        QCOMPARE(lengths, u"30 8 31 31 15 7 32767 "_s);
        QVERIFY(form.lstPrompts->isHidden() && form.lstUniquePromptsForSaving->isHidden());
        QVERIFY(!form.cmdApply->isEnabled());
        QCOMPARE(form.cmbUsePasswords->List(0) + form.cmbUsePasswords->List(1), u"YesNo"_s);
        QCOMPARE(form.cmbUsePasswords->ListIndex(), -1);
    }

    // Nothing lies over another control or beyond its frame, but for the fields that are laid over a row.
    void nothingIsCovered()
    {
        BareForm form;
        form.HideEntryEditors();
        Show(form);
        for (const QWidget* frame : {form.Frame1->parentWidget(), static_cast<QWidget*>(form.Frame1),
                                     static_cast<QWidget*>(form.fraDirectory)}) {
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

    void enterEscapeAndTheCloseBox()
    {
        BareForm form;
        form.Load();
        Show(form);
        Fill(*form.LVDirectory, u"a"_s);
        form.LVDirectory->SetSelected(0, true);
        QString clicked;
        connect(form.cmdOK, &QPushButton::clicked, this, [&] { clicked += u"OK "_s; });
        connect(form.cmdCancel, &QPushButton::clicked, this, [&] { clicked += u"Cancel "_s; });
        for (const char* name : {"txtDescription", "cmbMSGNodeNumber", "cmbNode", "LVDirectory"}) {
            auto* control = form.findChild<QWidget*>(QLatin1String(name));
            control->setFocus();
            QTest::keyClick(control, Qt::Key_Return);
            QTest::keyClick(control, Qt::Key_Escape);
        }
        QCOMPARE(clicked, u"OK Cancel "_s.repeated(4));
        form.keepLoaded = true;
        form.close();
        QVERIFY(form.isVisible() && form.IsLoaded());
        form.keepLoaded = false;
        form.close();
        QVERIFY(!form.isVisible() && !form.IsLoaded());
    }

    void directoryColumns()
    {
        BareForm form;
        ListView& list = *form.LVDirectory;
        Fill(list, u"a,b"_s);
        ResetDirectoryListView(list);
        QString columns;
        for (int column = 0; column < list.Items().ColumnCount(); ++column)
            columns += list.Items().headerData(column, Qt::Horizontal, Qt::DisplayRole).toString() +
                       (list.columnWidth(column) > 0 ? u"+ "_s : u" "_s);
        QCOMPARE(columns, u"# LastName+ FirstName+ Extension+ Prompt+ Password "_s);
        QCOMPARE(list.Items().RowCount(), 2);
    }

    // The rows, and behind > the columns that are clicked one after the other.
    void columnClicksSort_data()
    {
        AddCases({{"text", u"b,A,a,B>1"_s, u"A,a,b,B up by 1 of 6"_s},
                  {"text twice", u"b,A,a,B>11"_s, u"b,B,A,a down by 1 of 6"_s},
                  {"text three times", u"b,A,a,B>111"_s, u"A,a,b,B up by 1 of 6"_s},
                  {"password", u"9,10>5"_s, u"10,9 up by 5 of 6"_s},
                  {"number", u"9,10,1>3"_s, u"10,9,1 down by 6 of 7"_s},
                  {"lenient numbers", u"-1, 2 ,1e1,1.5,0>3"_s, u"1e1, 2 ,1.5,0,-1 down by 6 of 7"_s},
                  {"equal numbers", u"1,01,1.0>3"_s, u"1,01,1.0 down by 6 of 7"_s},
                  {"text after number", u"9,10,1>3131"_s, u"1,10,9 up by 1 of 7"_s},
                  {"row number, sorted", u"9,10>110"_s, u"9,10 down by 1 of 6"_s},
                  {"no rows", u">3"_s, u" down by 6 of 7"_s}});
    }
    void columnClicksSort()
    {
        QFETCH(QString, given);
        BareForm form;
        DirectoryListEvents events(form);
        Fill(*form.LVDirectory, given.section(u'>', 0, 0));
        for (const QChar column : given.section(u'>', 1))
            events.LVDirectory_ColumnClick(column.digitValue());
        QTEST(StateOf(*form.LVDirectory), "expected");
    }

    void textsThatAreNoNumber()
    {
        BareForm form;
        ListView& list = *form.LVDirectory;
        DirectoryListEvents events(form);
        Fill(list, u"1,x,20,3"_s);
        events.LVDirectory_ColumnClick(1);
        for (const QString& text : {u"x"_s, QString()}) {
            list.Items().SetText(3, 3, text);
            mBoxes->Expect(ErrorReport(u"LVDirectory_ColumnClick"_s,
                                       u"Extension of row 4 is \"%1\", which is not a number*"_s.arg(text)));
            events.LVDirectory_ColumnClick(3);
            QCOMPARE(StateOf(list), u"1,20,3,x unsorted of 7"_s);
        }
        list.Items().SetText(3, 3, u"2"_s);
        SortListByNumber(list, DirectoryColumn::Extension, ListItems::SortOrder::Ascending);
        QCOMPARE(StateOf(list), u"1,x,3,20 up by 6 of 7"_s);
    }

    void selection()
    {
        BareForm form;
        ListView& list = *form.LVDirectory;
        DirectoryListEvents events(form);
        Fill(list, u"1,2,3,4,5"_s);
        events.LVDirectory_KeyPress('a');
        QCOMPARE(GetSelectedCount(list), 0);
        events.LVDirectory_KeyPress(1);
        QCOMPARE(GetSelectedCount(list), 5);
        ClearSelectionFrom(list, 5);
        ClearSelectionFrom(list, 2);
        QCOMPARE(list.SelectedRows(), (std::vector{0, 1}));
        for (int i = 0; i < 2; ++i)
            events.LVDirectory_ColumnClick(3);
        QCOMPARE(list.SelectedRows(), (std::vector{3, 4}));
        ClearSelectionFrom(list, 0);
        QCOMPARE(GetSelectedCount(list), 0);
    }

    // What is done to the sample, and the node (0 is a new one); the selector and what it selects, the header, the
    // position, the buttons that lead anywhere.
    void nodesOnTheForm_data()
    {
        const QString all = u"DIR 7,DIR 12,DIR 20,DIR 31"_s;
        AddCases(
            {{"first", u">7"_s, all + u"@7|Staff|4711|Yes|5|1 of 4|cmdNext cmdLast"_s},
             {"last, Null", u">31"_s, all + u"@31|||No|1|4 of 4|cmdFirst cmdPrevious"_s},
             {"unknown", u">8"_s, all + u"@7|"_s},
             {"only one", u"DELETE FROM Node_DIR WHERE NodeNumber <> 7>7"_s, u"DIR 7@7|Staff|4711|Yes|5|1 of 1|"_s},
             {"too long",
              u"UPDATE Node_DIR SET NodeDescription = '123456789 123456789 123456789 1', AccessCode = "
              "'123456789'>12"_s,
              all + u"@12|123456789 123456789 123456789 |12345678|No|1|2 of 4|cmdFirst cmdPrevious cmdNext "
                    "cmdLast"_s},
             {"new", u"UPDATE Node_DIR SET NodeNumber = -3 WHERE NodeNumber = 31>0"_s,
              u"DIR -3,DIR 0,DIR 7,DIR 12,DIR 20@0|New directory||No|1|2 of 5|cmdFirst cmdPrevious cmdNext "
              "cmdLast"_s}});
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
        Prepare(form);
        QVERIFY(rules.LoadPromptMSGNodeNumber(form));
        rules.IsNewNode = node == 0;
        rules.LoadExistingNodesInRecordSelector(form, node);
        if (QByteArray(QTest::currentDataTag()) == "unknown")
            mBoxes->Expect(Notice(u"DIR 8 doesn't exist."_s));
        form.txtDescription->setText(u"before"_s);
        QTEST(Selector(form) + (rules.LoadData(form, node) ? Header(form) : u"|"_s), "expected");
        QCOMPARE(form.txtDescription->text() == u"before", node == 8);
        QCOMPARE(form.cmdFirst->isHidden(), node == 0);
        QCOMPARE(form.lblLabel->y() == form.cmdFirst->y(), node == 0);
        form.show();
        QCOMPARE(form.StatusBar1->geometry().bottom(), form.rect().bottom());
    }

    void proceduresReportTheirErrors()
    {
        const SampleDatabase sample;
        BareForm form;
        BusinessRules rules;
        Prepare(form);
        QVERIFY(rules.LoadPromptMSGNodeNumber(form));
        QCOMPARE(form.cmbPromptNumber->ListCount() + form.cmbMSGNodeNumber->ListCount(), 500);
        sample.Run(u"UPDATE Node_Type_Max SET Max_number = NULL"_s);
        QVERIFY(!rules.LoadPromptMSGNodeNumber(form));
        QCOMPARE(form.cmbPromptNumber->ListCount(), 0);
        QCOMPARE(form.cmbMSGNodeNumber->ListCount(), 250);
        QCOMPARE(rules.GetNextAvailableMSGNODENUMBER(form, false), qint16{0});
        QVERIFY(std::exchange(Module().PendingMessage, {}).startsWith(u"Please check the \"Max Number"));
        form.SetHighestMessageNode(250);
        for (const QString& table : {u"Node_DIR"_s, u"Node_Type_Max"_s, u"Node_MSG"_s})
            sample.Run(u"DROP TABLE "_s + table);
        mBoxes->Expect(ErrorReport(u"LoadExistingNodesInRecordSelector"_s, u"*Node_DIR*"_s));
        mBoxes->Expect(ErrorReport(u"LoadData"_s, u"*Node_DIR*"_s));
        mBoxes->Expect(ErrorReport(u"GetNextAvailableMSGNODENUMBER"_s, u"*Node_MSG*"_s));
        mBoxes->Expect(ErrorReport(u"LoadPromptMSGNodeNumber"_s, u"*Node_Type_Max*"_s));
        rules.LoadExistingNodesInRecordSelector(form, 7);
        QVERIFY(!rules.LoadData(form, 7));
        QCOMPARE(rules.GetNextAvailableMSGNODENUMBER(form, false), qint16{0});
        QVERIFY(!rules.LoadPromptMSGNodeNumber(form));
        QVERIFY(Module().PendingMessage.isEmpty() && !QGuiApplication::overrideCursor());
    }

    void coloursCanBeRead_data()
    {
        QTest::addColumn<QColor>("background");
        QTest::newRow("light") << QColor(Qt::white);
        QTest::newRow("dark") << QColor(0x35, 0x35, 0x35);
    }
    void coloursCanBeRead()
    {
        QFETCH(QColor, background);
        BareForm form;
        ListView& list = *form.LVDirectory;
        Fill(list, u"\u2588\u2588\u2588\u2588\u2588"_s); // full blocks: plain colour
        list.Items().SetForeColor(0, 1, invalidRowColour);
        list.Items().SetForeColor(0, 2, soundRowColour);
        Show(form);
        const auto restore = qScopeGuard([before = QApplication::palette()] { QApplication::setPalette(before); });
        QPalette palette(background, background);
        palette.setColor(QPalette::Base, background);
        QApplication::setPalette(palette);
        QTRY_COMPARE(list.palette().color(QPalette::Base), background);
        const QImage picture = list.viewport()->grab().toImage();
        const QPalette hint = form.lblCSVFormat->palette();
        QVERIFY(Contrast(hint.color(QPalette::WindowText), hint.color(QPalette::Window)) >= 3);
        for (const int column : {1, 2}) {
            const QRect cell = list.visualRect(list.model()->index(0, column));
            const QColor ink = picture.pixelColor(cell.left() + 12, cell.center().y());
            QVERIFY2(Contrast(ink, background) >= 3, qPrintable(ink.name()));
            QCOMPARE(ink.red() > ink.green() + 50, column == 1);
        }
    }
};

QTEST_MAIN(FormTest)
#include "FormTest.moc"
