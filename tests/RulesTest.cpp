// The node rules on a real database: what they show of it, and what people are told when it is not in order.
#include "form/Directory.h"
#include "form/ModuleState.h"
#include "platform/ui/ListItems.h"
#include "platform/ui/MsgBox.h"
#include "rules/BusinessRules.h"
#include "support/BareForm.h"
#include "support/BoxScript.h"
#include "support/Cases.h"
#include "support/SampleDatabase.h"

#include <QSqlDatabase>

using namespace qor;

namespace {

/// Calls a procedure by its name; whether it answers True or a number.
bool Call(const QString& procedure, BusinessRules& rules, EditorForm& form)
{
    if (procedure == u"LoadPromptMSGNodeNumber"_s)
        return rules.LoadPromptMSGNodeNumber(form);
    if (procedure == u"LoadData"_s)
        return rules.LoadData(form, 7);
    if (procedure == u"GetNextAvailableMSGNODENUMBER"_s)
        return rules.GetNextAvailableMSGNODENUMBER(form, false) != 0;
    if (procedure == u"IsNodeExisted"_s)
        return rules.IsNodeExisted(form, u"16"_s, u"7"_s);
    rules.LoadExistingNodesInRecordSelector(form, 7);
    return false;
}

QString HeaderOf(const EditorForm& form)
{
    QStringList values{form.txtDescription->text(), form.txtAccessCode->text(), form.cmbUsePasswords->Text(),
                       form.cmbMSGNodeNumber->Text(), form.lblRecordPosition->text()};
    for (const QWidget* button :
         std::initializer_list<QWidget*>{form.cmdFirst, form.cmdPrevious, form.cmdNext, form.cmdLast})
        values << (button->isEnabled() ? button->objectName() : u"-"_s);
    return values.join(u'|');
}

QString EntryOf(const EditorForm& form, int row)
{
    QStringList texts{form.LVDirectory->Items().Key(row)};
    for (int subItem = 0; subItem <= static_cast<int>(DirectoryColumn::SortKey); ++subItem)
        texts << form.LVDirectory->Items().Text(row, subItem);
    return texts.join(u'|');
}

} // namespace

class RulesTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SampleDatabase> mSample;
    std::unique_ptr<BareForm> mForm;
    std::unique_ptr<BoxScript> mBoxes;

    void Change(const QString& statement) const
    {
        if (!statement.isEmpty())
            mSample->Run(statement);
    }

private Q_SLOTS:
    void initTestCase() { InstallErrorBox(); }
    void init()
    {
        mSample = std::make_unique<SampleDatabase>();
        mForm = std::make_unique<BareForm>();
        mBoxes = std::make_unique<BoxScript>();
        mForm->SetConfigID(1);
        mForm->SetPartitionID(1);
        Module().PendingMessage.clear();
    }
    void cleanup()
    {
        mBoxes.reset();
        QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void recordSelector_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<int>("node"); // 0 is a new one
        QTest::addColumn<QString>("expected");
        const QString below = u"INSERT INTO Node_DIR (ConfigID, PartID, NodeTypeID, NodeNumber) "
                              "VALUES (1, 1, 16, -3)"_s;
        QTest::newRow("node") << QString() << 12 << u"DIR 7,DIR 12,DIR 20,DIR 31 @12"_s;
        QTest::newRow("unknown node") << QString() << 8 << u"DIR 7,DIR 12,DIR 20,DIR 31 @7"_s;
        QTest::newRow("new node") << QString() << 0 << u"DIR 0,DIR 7,DIR 12,DIR 20,DIR 31 @0"_s;
        QTest::newRow("below 0") << below << 31 << u"DIR 7,DIR 12,DIR 20,DIR 31 @31"_s;
        QTest::newRow("below 0, new node") << below << 0 << u"DIR -3,DIR 0,DIR 7,DIR 12,DIR 20,DIR 31 @0"_s;
        QTest::newRow("of another type") << u"UPDATE Node_DIR SET NodeTypeID = 17 WHERE NodeNumber = 12"_s << 12
                                         << u"DIR 7,DIR 20,DIR 31 @7"_s;
        QTest::newRow("no node") << u"DELETE FROM Node_DIR WHERE PartID = 1"_s << 7 << u" @"_s;
    }
    void recordSelector()
    {
        QFETCH(QString, change);
        QFETCH(int, node);
        Change(change);
        BusinessRules rules;
        rules.IsNewNode = node == 0;
        rules.LoadExistingNodesInRecordSelector(*mForm, static_cast<qint16>(node));
        QStringList items;
        for (int i = 0; i < mForm->cmbNode->ListCount(); ++i)
            items << mForm->cmbNode->List(i);
        QTEST(items.join(u',') + u" @"_s + mForm->cmbNode->currentData().toString(), "expected");
        QCOMPARE(mForm->cmdFirst->isHidden(), node == 0);
        QCOMPARE(mForm->lblLabel->y() == mForm->cmdFirst->y(), node == 0);
    }

    // The maximum, and: the result, the lengths of both lists, the starting prompt and whether a message waits.
    void promptLists_data()
    {
        AddCases({{"maximum", u"250"_s, u"true 250 250 1"_s},
                  {"highest maximum", u"32767"_s, u"true 32767 32767 1"_s},
                  {"text", u"'12'"_s, u"true 12 12 1"_s},
                  {"0", u"0"_s, u"false 0 3 2 waits"_s},
                  {"below 0", u"-1"_s, u"false 0 3 2 waits"_s},
                  {"Null", u"NULL"_s, u"false 0 3 2 waits"_s},
                  {"none", {}, u"false 0 3 2 waits"_s}});
    }
    void promptLists()
    {
        QFETCH(QString, given);
        Change(given.isEmpty() ? u"DELETE FROM Node_Type_Max WHERE NodeType_ID = 0"_s
                               : u"UPDATE Node_Type_Max SET Max_number = %1 WHERE NodeType_ID = 0"_s.arg(given));
        for (ComboBox* box : {mForm->cmbPromptNumber, mForm->cmbMSGNodeNumber})
            box->SetNumbers(1, 3);
        mForm->cmbMSGNodeNumber->SetListIndex(1);
        const bool result = BusinessRules().LoadPromptMSGNodeNumber(*mForm);
        const QString& message = Module().PendingMessage;
        QTEST((result ? u"true"_s : u"false"_s) +
                  u" %1 %2 %3"_s.arg(mForm->cmbPromptNumber->ListCount())
                      .arg(mForm->cmbMSGNodeNumber->ListCount())
                      .arg(mForm->cmbMSGNodeNumber->Text()) +
                  (message.isEmpty() ? QString() : u" waits"_s),
              "expected");
        QVERIFY(result || message == u"Please check the \"Max Number of each Node\" Section for MSG Node in "
                                     "Partition Settings."_s);
    }

    void nodeHeaders_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<int>("node");
        QTest::addColumn<int>("entryCount");
        QTest::addColumn<QString>("expected");
        const auto update = [](const char* values) { return u"UPDATE Node_DIR SET "_s + QString::fromLatin1(values); };
        const QString all = u"cmdFirst|cmdPrevious|cmdNext|cmdLast"_s;
        const QString none = u"-|-|-|-"_s;
        QTest::newRow("first") << QString() << 7 << 40 << u"Staff|4711|Yes|5|1 of 4|-|-|cmdNext|cmdLast"_s;
        QTest::newRow("between") << QString() << 12 << 500 << u"All extensions||No|1|2 of 4|"_s + all;
        QTest::newRow("highest prompt") << QString() << 20 << 0 << u"Visitors|20202020|No|250|3 of 4|"_s + all;
        QTest::newRow("last, Null, prompt too high")
            << QString() << 31 << 13 << u"||No|1|4 of 4|cmdFirst|cmdPrevious|-|-"_s;
        QTest::newRow("only one") << u"DELETE FROM Node_DIR WHERE NodeNumber <> 7"_s << 7 << 40
                                  << u"Staff|4711|Yes|5|1 of 1|"_s + none;
        QTest::newRow("prompt 0, other yes") << update("StartingPromptNumber = 0, UsePasswords = -1") << 12 << 500
                                             << u"All extensions||No|1|2 of 4|"_s + all;
        QTest::newRow("texts for numbers") << update("StartingPromptNumber = 'x', UsePasswords = 'x', AccessCode = 12")
                                           << 12 << 500 << u"All extensions|12|No|1|2 of 4|"_s + all;
        QTest::newRow("too long")
            << update("NodeDescription = 'A description of forty characters, cut..', AccessCode = '123456789'") << 12
            << 500 << u"A description of forty charact|12345678|No|1|2 of 4|"_s + all;
    }
    void nodeHeaders()
    {
        QFETCH(QString, change);
        QFETCH(int, node);
        Change(change);
        BusinessRules rules;
        rules.LoadExistingNodesInRecordSelector(*mForm, static_cast<qint16>(node));
        QVERIFY(rules.LoadPromptMSGNodeNumber(*mForm));
        for (int i = 0; i < 2; ++i)
            QVERIFY(rules.LoadData(*mForm, static_cast<qint16>(node)));
        QTEST(HeaderOf(*mForm), "expected");
        QTEST(mForm->LVDirectory->Items().RowCount(), "entryCount");
    }

    void entriesAreReplacedWhereMissing()
    {
        Change(u"UPDATE Detail_DIR SET SequenceNo = 99 WHERE NodeMasterID = 31 AND SequenceNo = 3"_s);
        QVERIFY(BusinessRules().LoadData(*mForm, 31));
        const QString odd = u"Abcdefghijklmnopqrstuvwxyzabcde"_s;
        const QStringList entries{
            u"1a|1|UNKNOWN|UNKNOWN|1|1|1|"_s,       u"2a|2|UNKNOWN|UNKNOWN|1|1|1|"_s,
            u"3a|3|Baker|UNKNOWN|102|2|1|"_s,       u"4a|4|Clark|John|1|3|1|"_s,
            u"5a|5|Davies|Elena|104|1|1|"_s,        u"6a|6|Evans|Tom|105|5|1|"_s,
            u"7a|7|Foster|Maria|106|1|1|"_s,        u"8a|8|Harris|Nils|107|999|1|"_s,
            u"9a|9|Irving|Olga|108|1|1|"_s,         u"10a|10|Jones|Paula|109|1|1|"_s,
            u"11a|11|King|Ralf|110|251|1234567|"_s, u"12a|12|%1|%1|123456789012345|12|12345678901234567890|"_s.arg(odd),
            u"13a|13|UNKNOWN|Anne|101|1|1|"_s};
        QCOMPARE(mForm->LVDirectory->Items().RowCount(), 13);
        for (int row = 0; row < 13; ++row) {
            QCOMPARE(EntryOf(*mForm, row), entries[row]);
            QVERIFY(!mForm->LVDirectory->Items().ForeColor(row, 1));
        }
    }

    void unknownNode()
    {
        BusinessRules rules;
        QVERIFY(rules.LoadData(*mForm, 7));
        ExpectedBox notice = Notice(u"DIR 99 doesn't exist."_s);
        notice.inspect = [](const QMessageBox&) { QVERIFY(!QGuiApplication::overrideCursor()); };
        mBoxes->Expect(notice);
        QVERIFY(!rules.LoadData(*mForm, 99));
        QCOMPARE(mForm->txtDescription->text(), u"Staff"_s);
        QCOMPARE(mForm->LVDirectory->Items().RowCount(), 40);
        QVERIFY(rules.LoadData(*mForm, 7));
    }

    // What is done to the database; the procedure that then meets it, and what its report says.
    void errorReports_data()
    {
        AddCases({{"no nodes", u"DROP TABLE Node_DIR"_s, u"LoadExistingNodesInRecordSelector|*Node_DIR*"_s},
                  {"node number", u"UPDATE Node_DIR SET NodeNumber = 40000 WHERE NodeNumber = 7"_s,
                   u"LoadExistingNodesInRecordSelector|NodeNumber of * is 40000; it must lie from -32768 *"_s},
                  {"no maxima", u"DROP TABLE Node_Type_Max"_s, u"LoadPromptMSGNodeNumber|*Node_Type_Max*"_s},
                  {"maximum", u"UPDATE Node_Type_Max SET Max_number = 40000"_s,
                   u"LoadPromptMSGNodeNumber|Max_number of * is 40000; it must lie from * to 32767."_s},
                  {"no number", u"UPDATE Node_Type_Max SET Max_number = 'many'"_s,
                   u"LoadPromptMSGNodeNumber|Max_number of * is \"many\", which is not a number."_s},
                  {"no node", u"DROP TABLE Node_DIR"_s, u"LoadData|*Node_DIR*"_s},
                  {"no entries", u"DROP TABLE Detail_DIR"_s, u"LoadData|*Detail_DIR*"_s},
                  {"no column", u"ALTER TABLE Detail_DIR DROP COLUMN Extension"_s, u"LoadData|*Extension*"_s},
                  {"no messages", u"DROP TABLE Node_MSG"_s, u"GetNextAvailableMSGNODENUMBER|*Node_MSG*"_s},
                  {"no pool", u"DROP TABLE Node_General_Pool"_s, u"IsNodeExisted|*Node_General_Pool*"_s}});
    }
    void errorReports()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        QVERIFY(BusinessRules().LoadPromptMSGNodeNumber(*mForm));
        Change(given);
        BusinessRules rules;
        for (int i = 0; i < 2; ++i) {
            mBoxes->Expect(ErrorReport(expected.section(u'|', 0, 0), expected.section(u'|', 1)));
            QVERIFY(!Call(expected.section(u'|', 0, 0), rules, *mForm));
        }
    }

    // Starting prompt, maximum and configuration; the numbers of successive calls.
    void nextNumbers_data()
    {
        AddCases({{"gaps", u"1 250 1"_s, u"13 27 41 42 50 55 61 62"_s},
                  {"start free", u"13 250 1"_s, u"13 27"_s},
                  {"start in use", u"30 250 1"_s, u"41 42"_s},
                  {"wrapped", u"250 250 1"_s, u"250 13 27"_s},
                  {"wrapped to none", u"61 61 1"_s, u"61 13"_s},
                  {"another configuration", u"1 40 2"_s, u"11 12"_s},
                  {"none free", u"1 12 1"_s, u"0 0"_s},
                  {"start beyond the maximum", u"300 250 1"_s, u"0 0"_s}});
    }
    void nextNumbers()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        const QStringList values = given.split(u' ');
        Change(u"UPDATE Node_MSG SET NodeNumber = 'x' WHERE NodeNumber = 0"_s); // neither is a number to hand out
        mForm->SetConfigID(values[2].toShort());
        mForm->cmbMSGNodeNumber->SetText(values[0]);
        mForm->cmbPromptNumber->SetNumbers(1, values[1].toInt());
        BusinessRules rules;
        const auto count = expected.count(u' ') + 1;
        for (int round = 0; round < 2; ++round) {
            QStringList numbers;
            while (numbers.size() < count)
                numbers << QString::number(rules.GetNextAvailableMSGNODENUMBER(*mForm, false));
            QCOMPARE(numbers.join(u' '), expected);
            QCOMPARE(rules.GetNextAvailableMSGNODENUMBER(*mForm, true), qint16{0});
        }
    }

    void nextNumberWithoutStart()
    {
        BusinessRules rules;
        mForm->cmbMSGNodeNumber->SetText(u"5"_s);
        QCOMPARE(rules.GetNextAvailableMSGNODENUMBER(*mForm, false), qint16{0}); // of an empty list
        rules.GetNextAvailableMSGNODENUMBER(*mForm, true);
        mForm->cmbPromptNumber->SetNumbers(1, 250);
        for (const QString& text : {u"x"_s, u""_s}) {
            mForm->cmbMSGNodeNumber->SetText(text);
            mBoxes->Expect(ErrorReport(u"GetNextAvailableMSGNODENUMBER"_s, u"*\"%1\"*not a number*"_s.arg(text)));
            QCOMPARE(rules.GetNextAvailableMSGNODENUMBER(*mForm, false), qint16{0});
        }
        mForm->cmbMSGNodeNumber->SetText(u"5"_s);
        QCOMPARE(rules.GetNextAvailableMSGNODENUMBER(*mForm, false), qint16{13});
        mSample->Run(u"UPDATE Node_MSG SET NodeNumber = 27 WHERE NodeNumber = 28"_s);
        QCOMPARE(rules.GetNextAvailableMSGNODENUMBER(*mForm, false), qint16{28});
    }

    void nodesInThePool()
    {
        BusinessRules rules;
        const auto exists = [&](const char* type, const char* number) {
            return rules.IsNodeExisted(*mForm, QString::fromLatin1(type), QString::fromLatin1(number));
        };
        QVERIFY(exists("16", "7") && exists("0", "60") && exists("817", "60") && exists("818", "0"));
        QVERIFY(exists(" 817 ", "60") && exists("8.18e2", "60"));
        QVERIFY(!exists("16", "8") && !exists("817", "13") && !exists("819", "60") && !exists("8170", "60"));
        mForm->SetPartitionID(2);
        QVERIFY(!exists("817", "60") && exists("817", "6"));
    }

    void instancesAreApart()
    {
        BusinessRules first;
        QVERIFY(first.LoadPromptMSGNodeNumber(*mForm));
        QCOMPARE(first.GetNextAvailableMSGNODENUMBER(*mForm, false), qint16{13});
        {
            BusinessRules second;
            QCOMPARE(second.GetNextAvailableMSGNODENUMBER(*mForm, false), qint16{13});
            QCOMPARE(QSqlDatabase::connectionNames().size(), 2);
        }
        QCOMPARE(QSqlDatabase::connectionNames().size(), 1);
        QCOMPARE(first.GetNextAvailableMSGNODENUMBER(*mForm, false), qint16{27});
    }
};

QTEST_MAIN(RulesTest)
#include "RulesTest.moc"
