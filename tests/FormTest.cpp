// The form and the procedures that show something on it: how its list sorts, what they show of a node.
#include "editor/BusinessRules.h"
#include "editor/DirectoryListEvents.h"
#include "editor/History.h"
#include "form/DirectoryRows.h"
#include "form/ModuleState.h"
#include "platform/ui/ListItems.h"
#include "support/BareForm.h"
#include "support/BoxScript.h"
#include "support/Cases.h"
#include "support/SampleDatabase.h"

#include <QSqlDatabase>

using namespace qor;

namespace {

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

} // namespace

class FormTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QCOMPARE(QSqlDatabase::connectionNames(), QStringList()); }

    void columnClicksSort()
    {
        const auto sorted = [](const QString& rows, std::initializer_list<int> columns) {
            BareForm form;
            History history(form);
            DirectoryListEvents events(form, history);
            form.FillList(rows);
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
        form.FillList(u"1,x,20,3"_s);
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
        QVERIFY(rules.LoadPromptMSGNodeNumber(form));
        QCOMPARE(form.cmbPromptNumber->ListCount() + form.cmbMSGNodeNumber->ListCount(), 500);
        sample.Run(u"UPDATE Node_Type_Max SET Max_number = NULL"_s);
        QVERIFY(!rules.LoadPromptMSGNodeNumber(form));
        QCOMPARE(form.cmbPromptNumber->ListCount(), 0);
        QCOMPARE(form.cmbMSGNodeNumber->ListCount(), 250);
        QCOMPARE(rules.GetNextAvailableMSGNODENUMBER(form, false), qint16{0});
        QVERIFY(std::exchange(Module().PendingMessage, {}).startsWith(u"Please check the \"Max Number"_s));
    }
};

QTEST_MAIN(FormTest)
#include "FormTest.moc"
