// The rules on a real database and without a window: what is read of a node and written of it, the prompts of new
// entries, missing message nodes, validation.
#include "rules/MessageNodes.h"
#include "rules/NodeLoading.h"
#include "rules/NodeSaving.h"
#include "rules/PromptNumbers.h"
#include "rules/TypedText.h"
#include "rules/Validation.h"
#include "store/DataBase.h"
#include "support/Cases.h"
#include "support/SampleDatabase.h"

using namespace qor;

namespace {

constexpr Partition mainPartition{1, 1};

QString TextOf(const DirectoryEntry& entry)
{
    return QStringList{entry.lastName, entry.firstName, entry.extension, entry.prompt, entry.password}.join(u'|');
}

/// Entries with these prompts; one with x is not sound.
std::vector<DirectoryEntry> EntriesWith(const QString& prompts)
{
    std::vector<DirectoryEntry> entries;
    for (const QString& prompt : prompts.split(u','))
        entries.push_back({prompt == u"x"_s ? QString() : u"Last"_s, u"First"_s, u"1"_s, prompt, u"1"_s});
    return entries;
}

} // namespace

class RulesTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SampleDatabase> mSample;
    std::unique_ptr<DataBase> mDataBase;

    DirectoryNode Load(qint16 number) const { return LoadNode(*mDataBase, {mainPartition, number}, 250).value(); }
    /// With these answers, a digit for each question. The questions, what is told as made, and what is checked.
    QString MakeMissing(const QString& prompts, QString answers) const
    {
        QString log;
        QStringList checked;
        const auto ask = [&](const QString& prompt) {
            log += prompt + u"? "_s;
            const int answer = answers.isEmpty() ? 0 : answers.front().digitValue();
            answers.remove(0, 1);
            return static_cast<ConfirmationAnswer>(answer);
        };
        MakeMissingMessageNodes(*mDataBase, mainPartition, EntriesWith(prompts),
                                {{[&](const QString& prompt) { return checked.contains(prompt); },
                                  [&](const QString& prompt) { checked << prompt; }},
                                 ask,
                                 [&](const QString& prompt) { log += prompt + u"! "_s; }});
        return log + u"checked "_s + checked.join(u' ');
    }

private Q_SLOTS:
    void init()
    {
        mSample = std::make_unique<SampleDatabase>();
        mDataBase = std::make_unique<DataBase>();
    }

    void directoryNodes()
    {
        const auto found = [&](const QString& renumbered) {
            mSample->Run(
                u"UPDATE Node_DIR SET NodeNumber = CASE NodeNumber %1 ELSE NodeNumber END WHERE PartID = 1"_s.arg(
                    renumbered));
            const DirectoryNodeNumbers nodes = FindDirectoryNodes(*mDataBase, mainPartition);
            QString numbers;
            for (const qint16 number : nodes.numbers)
                numbers += QString::number(number) + u' ';
            return numbers + u"unusable: "_s + nodes.unusable.join(u',');
        };
        QCOMPARE(found(u"WHEN 20 THEN -32768 WHEN 31 THEN 32767"_s), u"-32768 0 7 12 32767 unusable: "_s);
        QCOMPARE(found(u"WHEN 7 THEN 40000"_s), u"-32768 0 12 32767 unusable: 40000"_s);
        if (!SampleDatabase::IsOnServer()) // which takes whole numbers only
            QCOMPARE(found(u"WHEN 12 THEN 12.5 WHEN 32767 THEN 'x'"_s), u"-32768 0 unusable: 12.5,40000,x"_s);
        mSample->Run(u"UPDATE Node_DIR SET NodeTypeID = 17 WHERE NodeNumber <> 0"_s);
        QCOMPARE(found(u"WHEN 0 THEN 0"_s), u"0 unusable: "_s);
    }

    void highestMessageNode()
    {
        const auto highest = [&](const QString& value) {
            mSample->Run(u"UPDATE Node_Type_Max SET Max_number = "_s + value);
            return HighestMessageNode(*mDataBase, mainPartition).value_or(0);
        };
        QCOMPARE(highest(u"12"_s), qint16{12});
        QCOMPARE(highest(u"NULL"_s), qint16{0});
        QCOMPARE(RaisedBy([&] { highest(u"32768"_s); }),
                 u"6: Max_number of the message nodes is 32768; it must lie from -32768 to 32767."_s);
        if (SampleDatabase::IsOnServer())
            QSKIP("The server takes whole numbers only.");
        QCOMPARE(highest(u"CAST('12.0' AS BLOB)"_s), qint16{12});
        QCOMPARE(highest(u"12.5"_s), qint16{0});
        QCOMPARE(RaisedBy([&] { highest(u"'%1 x'"_s); }),
                 u"13: Max_number of the message nodes is \"%1 x\", which is not a number."_s);
    }

    void nodeHeaders()
    {
        const auto header = [&](const QString& change) {
            mSample->Run(u"UPDATE Node_DIR SET %1 WHERE NodeNumber = 7"_s.arg(change));
            const NodeHeader read = Load(7).header;
            return read.accessCode + (read.usePasswords ? u" Yes "_s : u" No "_s) + read.startingPrompt;
        };
        QCOMPARE(header(u"StartingPromptNumber = 250"_s), u"4711 Yes 250"_s);
        QCOMPARE(header(u"StartingPromptNumber = 251"_s), u"4711 Yes 1"_s);
        QCOMPARE(header(u"StartingPromptNumber = 0, UsePasswords = -1"_s), u"4711 No 1"_s);
        const QString none = SampleDatabase::IsOnServer() ? u"NULL"_s : u"12.5"_s;
        QCOMPARE(header(u"StartingPromptNumber = %1, AccessCode = 'a1-2 3\u0664'"_s.arg(none)), u"123 No 1"_s);
    }

    void missingValuesOfEntriesAreReplaced()
    {
        mSample->Run(u"UPDATE Detail_DIR SET SequenceNo = 99 WHERE NodeMasterID = 31 AND SequenceNo = 3"_s);
        const QString odd = SampleDatabase::IsOnServer() ? u"4 THEN 12 ELSE NULL"_s
                                                         : u"4 THEN CAST('12.0' AS BLOB) WHEN 5 THEN 12.5 ELSE 'x'"_s;
        mSample->Run(u"UPDATE Detail_DIR SET NamePrompt = CASE SequenceNo WHEN %1 END WHERE NodeMasterID = 31 AND "
                     "SequenceNo IN (4, 5, 6)"_s.arg(odd));
        const DirectoryNode node = Load(31);
        QString found;
        for (const std::size_t row : {0, 1, 2, 3, 4, 5, 6, 7, 8, 11, 12})
            found += TextOf(node.entries[row]) + u'\n';
        const QString longest = u"Abcdefghijklmnopqrstuvwxyzabcde"_s;
        QCOMPARE(found, u"UNKNOWN|UNKNOWN|1|1|1\nUNKNOWN|UNKNOWN|1|1|1\nBaker|UNKNOWN|102|12|1\nClark|John|1|1|1\n"
                        "Davies|Elena|104|1|1\nEvans|Tom|105|5|1\nFoster|Maria|106|1|1\nHarris|Nils|107|999|1\n"
                        "Irving|Olga|108|1|1\n%1|%1|123456789012345|12|12345678901234567890\n"
                        "UNKNOWN|Anne|101|1|1\n"_s.arg(longest));
        mSample->Run(u"ALTER TABLE Detail_DIR RENAME COLUMN Extension TO Other"_s);
        QVERIFY(RaisedBy([&] { Load(31); }).contains(u"Extension"_s, Qt::CaseInsensitive));
    }

    void savedNodesReadBackEqual()
    {
        DirectoryNode node{{mainPartition, 7}, {u"O'Neil \"\u00e4\U0001F600\" --"_s, u"0012"_s, true, u"250"_s}, {}};
        for (int i = 0; i < 3; ++i) {
            node.entries.push_back({u"de la Cruz %1; '\"?1"_s.arg(i), u"\u0141ukasz"_s, u"0%1.50"_s.arg(i),
                                    QString::number(999 - i), u" \U0001F600 "_s});
        }
        for (const std::size_t count : {3U, 1U, 0U}) {
            node.entries.resize(count);
            SaveNode(*mDataBase, node);
            DataBase another;
            const DirectoryNode read = LoadNode(another, node.identity, 250).value();
            QVERIFY(read.header == node.header && read.entries == node.entries);
            node.header.usePasswords = false;
        }
        QCOMPARE(Load(12).entries.size(), std::size_t{500});
    }

    // Four successive numbers, and the first one after a restart.
    void nextNumbers()
    {
        const auto next = [&](const QString& start, int highest, const Partition& partition = mainPartition) {
            const auto used = UsedMessageNodeNumbers(*mDataBase, partition);
            PromptNumbers prompts;
            QStringList numbers;
            for (int i = 0; i < 4; ++i)
                numbers << QString::number(prompts.Next(start, highest, used));
            prompts.Restart();
            numbers << QString::number(prompts.Next(start, highest, used));
            return numbers.join(u',');
        };
        QCOMPARE(next({}, 250), u"13,27,41,42,13"_s);
        QCOMPARE(next(u"41"_s, 250), u"41,42,50,55,41"_s);
        QCOMPARE(next(u"250"_s, 250), u"250,13,27,41,250"_s);
        QCOMPARE(next(u"32767"_s, 32767), u"32767,13,27,41,32767"_s);
        QCOMPARE(next(u"1"_s, 12), u"0,0,0,0,0"_s);
        QCOMPARE(next(u"300"_s, 250), u"0,0,0,0,0"_s);
        QCOMPARE(next(u"1"_s, 40, {2, 1}), u"11,12,13,14,11"_s);
        if (SampleDatabase::IsOnServer())
            QSKIP("The server takes whole numbers only.");
        mSample->Run(u"DELETE FROM Node_MSG WHERE NodeNumber NOT IN (2, 3, 14, 60)"_s);
        mSample->Run(u"UPDATE Node_MSG SET NodeNumber = CASE NodeNumber WHEN 2 THEN 'x' WHEN 3 THEN CAST('13' AS BLOB) "
                     "ELSE NodeNumber END"_s);
        QCOMPARE(UsedMessageNodeNumbers(*mDataBase, mainPartition), (MessageNodeNumbers{13, 14, 60}));
    }

    void nodesInThePool()
    {
        const auto exists = [&](const char* type, const char* number, const Partition& partition = mainPartition) {
            return IsNodeExisted(*mDataBase, partition, QString::fromLatin1(type), QString::fromLatin1(number));
        };
        QVERIFY(exists("16", "7") && exists("0", "60") && exists("817", "60") && exists("818", "0"));
        QVERIFY(!exists("16", "8") && !exists("817", "13") && !exists("819", "60") && !exists("8170", "60"));
        QVERIFY(!exists("817", "60", {1, 2}) && exists("817", "6", {1, 2}));
    }

    void missingMessageNodes()
    {
        QCOMPARE(MakeMissing(u"1,2,1"_s, {}), u"checked 1 2"_s);
        QCOMPARE(MakeMissing(u"27,1,41,42"_s, u"239"_s), u"27? 27! 41? 42? checked 27 1 41 42"_s);
        QCOMPARE(MakeMissing(u"13,13,50,55"_s, u"25"_s), u"13? 13! 50? checked 13"_s);
        QCOMPARE(MakeMissing(u"50,55,50,61"_s, u"34"_s), u"50? 55? 55! 61! checked 50 55 61"_s);
        QCOMPARE(MakeMissing(u"62,63"_s, u"0"_s), u"62? checked "_s);
        // what was made is a copy of node 0
        QCOMPARE(mSample->Run(u"SELECT KELFilename, m.NodeDescription, DTMF, p.NodeDescription FROM Node_MSG m JOIN "
                              "Node_General_Pool p USING (ConfigID, PartID, NodeTypeID, NodeNumber) WHERE PartID = 1 "
                              "AND NodeNumber = 13"_s),
                 QStringList(u"P01M013.wav|First Last|0123456789*#|First Last"_s));
    }

    void namesOfMessageNodes()
    {
        QCOMPARE(WaveFileName(12, u"1234"_s), u"P12M1234.wav"_s);
        QCOMPARE(WaveFileName(-5, u"5"_s), u"P-05M005.wav"_s);
        QCOMPARE(WaveFileName(1, u"x y"_s), u"P01Mx y.wav"_s);
        const QString name(15, u'a');
        QCOMPARE(MessageNodeDescription({name + u"b"_s, name, {}, {}, {}}), name + u' ' + name);
        QCOMPARE(MessageNodeDescription({name.first(14) + u"\U0001F600"_s, name, {}, {}, {}}),
                 name + u' ' + name.first(14));
    }

    void validation()
    {
        const auto verdict = [](const QString& text) {
            const QStringList fields = text.split(u',');
            return ValidateData(fields[0], fields[1], fields[2]).simplified() +
                   (IsSound({fields[0], fields[1], fields[2], {}, {}}) ? u" sound"_s : QString());
        };
        QCOMPARE(verdict(u"azAZ,Anne,0123456789012345"_s), u" sound"_s);
        QCOMPARE(verdict(u",,"_s), u"No Data in LastName No Data in FirstName No Data in Extension"_s);
        for (const QString& entry : {u" , , "_s, u"\u00c4dams,Anne1,\u0661"_s})
            QCOMPARE(verdict(entry), u"Invalid LastName Invalid FirstName Invalid Extension"_s);
        QCOMPARE(verdict(u"@[,`{,01234567890123456"_s),
                 u"Invalid LastName Invalid FirstName Invalid Extension sound"_s);
        QCOMPARE(verdict(u"Adams,Anne,-1.5e3"_s), u"Invalid Extension sound"_s);
        QVERIFY(IsAcceptableLabel(u"O'Neil's"_s) && !IsAcceptableLabel(u"a\"b"_s) && !IsAcceptableLabel(u"a''b"_s));
        QVERIFY(IsAcceptableAccessCode({}) && IsAcceptableAccessCode(u"1234"_s) && !IsAcceptableAccessCode(u"123"_s));
    }

    void faults()
    {
        const auto fault = [](const QString& prompts) {
            QStringList met;
            const auto found = FindFault(EntriesWith(prompts), [&](const QString& prompt) {
                met << prompt;
                return met.count(prompt) > 1;
            });
            return found ? (found->isInvalid ? u"entry %1"_s : u"prompt %1"_s).arg(found->row) : u"none"_s;
        };
        QCOMPARE(fault(u"1,2,3"_s), u"none"_s);
        QCOMPARE(fault(u"1,2,1,2,3"_s), u"prompt 3"_s); // the last one
        QCOMPARE(fault(u"1,1,x,2,x"_s), u"entry 2"_s);
        QCOMPARE(fault(u"x,1,1"_s), u"entry 0"_s);
    }

    void typedTexts()
    {
        QCOMPARE(Admitted(u"a1\u00e9 Z'2", IsLetter), u"aZ"_s);
        const auto typed = [](const char* text, int low = 1, int high = 250) {
            return TypedNumber(QString::fromLatin1(text), low, high);
        };
        QCOMPARE(typed("250"), 250);
        QCOMPARE(typed("251"), 25);
        QCOMPARE(typed("12x3"), 12);
        QCOMPARE(typed("05"), 0);
        QCOMPARE(typed(""), 0);
        QCOMPARE(typed("12", 5, 20), 0);
        QCOMPARE(typed("99999999999999", 1, 32767), 9999);
    }
};

QTEST_GUILESS_MAIN(RulesTest)
#include "RulesTest.moc"
