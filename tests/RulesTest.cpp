// The rules on a real database and without a window: what is read of a node and written of it, the prompts of new
// entries, missing message nodes, validation, lists of delimited text.
#include "rules/DelimitedReader.h"
#include "rules/DelimitedWriter.h"
#include "rules/EntryList.h"
#include "rules/MessageNodes.h"
#include "rules/NodeLoading.h"
#include "rules/NodeSaving.h"
#include "rules/PromptNumbers.h"
#include "rules/TypedText.h"
#include "rules/Validation.h"
#include "store/DataBase.h"
#include "support/Cases.h"
#include "support/SampleDatabase.h"

#include <QBuffer>

using namespace qor;

namespace {

constexpr Partition mainPartition{1, 1};
constexpr Partition withoutMaximum{1, 2};

/// A device that knows no size. It hands out its data byte by byte; with another size than the data has it repeats
/// them up to there and then fails.
class Stream : public QIODevice
{
public:
    Stream(QByteArray data, qint64 size) : mData(std::move(data)), mSize(size) { open(ReadOnly | Unbuffered); }
    bool isSequential() const override { return true; }

    qint64 taken = 0;

protected:
    qint64 readData(char* to, qint64 room) override
    {
        const bool fails = mSize != mData.size();
        const qint64 count = std::min({room, mSize - taken, fails ? mSize : 1});
        for (qint64 i = 0; i < count; ++i)
            to[i] = mData[static_cast<qsizetype>(taken++ % mData.size())];
        return count > 0 || !fails ? count : -1;
    }
    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    QByteArray mData;
    qint64 mSize;
};

/// Every field in brackets, and what ended the reading.
QString FieldsOn(QIODevice& device)
{
    QString fields;
    const QString raised = RaisedBy([&] {
        for (DelimitedReader reader(device); !reader.AtEnd();)
            fields += u'[' + reader.ReadField() + u']';
    });
    return fields + raised.section(u':', 1);
}

QString FieldsIn(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return FieldsOn(buffer);
}

QString TextOf(const DirectoryEntry& entry)
{
    return QStringList{entry.lastName, entry.firstName, entry.extension, entry.prompt, entry.password}.join(u'|');
}

QString TextOf(const NodeHeader& header)
{
    return QStringList{header.description, header.accessCode, header.usePasswords ? u"Yes"_s : u"No"_s,
                       header.startingPrompt}
        .join(u'|');
}

template <typename Numbers>
QString Joined(const Numbers& numbers)
{
    QStringList texts;
    for (const auto number : numbers)
        texts << QString::number(number);
    return texts.join(u',');
}

/// "Adams,Anne,101" with two more fields for prompt and password.
DirectoryEntry EntryFrom(const QString& text)
{
    const QStringList fields = text.split(u',');
    return {fields.value(0), fields.value(1), fields.value(2), fields.value(3), fields.value(4)};
}

/// Entries with these prompts.
std::vector<DirectoryEntry> EntriesWith(const QString& prompts)
{
    std::vector<DirectoryEntry> entries;
    for (const QString& prompt : prompts.split(u','))
        entries.push_back({u"Last"_s, u"First"_s, u"1"_s, prompt, u"1"_s});
    return entries;
}

} // namespace

class RulesTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SampleDatabase> mSample;
    std::unique_ptr<DataBase> mDataBase;

    void Change(const QString& statement) const
    {
        if (!statement.isEmpty())
            mSample->Run(statement);
    }
    std::optional<DirectoryNode> Load(qint16 number, int highest = 250) const
    {
        return LoadNode(*mDataBase, {mainPartition, number}, highest);
    }
    /// With these answers, a digit for each question. The questions, what is told as made, and what is checked.
    QString MakeMissing(const std::vector<DirectoryEntry>& entries, QString answers) const
    {
        QString log;
        QStringList checked;
        const auto ask = [&](const QString& prompt) {
            log += prompt + u"? "_s;
            const int answer = answers.isEmpty() ? 0 : answers.front().digitValue();
            answers.remove(0, 1);
            return static_cast<ConfirmationAnswer>(answer);
        };
        MakeMissingMessageNodes(*mDataBase, mainPartition, entries,
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

    void directoryNodes_data()
    {
        AddCases(
            {{"as they are", {}, u"0,7,12,20,31 unusable: "_s},
             {"below 0", u"UPDATE Node_DIR SET NodeNumber = -3 WHERE NodeNumber = 31"_s, u"-3,0,7,12,20 unusable: "_s},
             {"limits",
              u"UPDATE Node_DIR SET NodeNumber = iif(NodeNumber = 7, -32768, 32767) "
              "WHERE PartID = 1 AND NodeNumber IN (7, 12)"_s,
              u"-32768,0,20,31,32767 unusable: "_s},
             {"unusable",
              u"UPDATE Node_DIR SET NodeNumber = CASE NodeNumber WHEN 7 THEN 40000 WHEN 12 THEN 12.5 "
              "WHEN 20 THEN 'x' ELSE NodeNumber END WHERE PartID = 1"_s,
              u"0,31 unusable: 12.5,40000,x"_s},
             {"another type", u"UPDATE Node_DIR SET NodeTypeID = 17 WHERE NodeNumber = 12"_s,
              u"0,7,20,31 unusable: "_s},
             {"none", u"DELETE FROM Node_DIR"_s, u" unusable: "_s}});
    }
    void directoryNodes()
    {
        QFETCH(QString, given);
        Change(given);
        const DirectoryNodeNumbers found = FindDirectoryNodes(*mDataBase, mainPartition);
        QTEST(Joined(found.numbers) + u" unusable: "_s + found.unusable.join(u','), "expected");
    }

    void highestMessageNode_data()
    {
        AddCases({{"number", u"32767"_s, u"32767"_s},
                  {"text with a fraction of 0", u"CAST('12.0' AS BLOB)"_s, u"12"_s},
                  {"fraction", u"12.5"_s, {}},
                  {"0", u"0"_s, {}},
                  {"below 0", u"-1"_s, {}},
                  {"Null", u"NULL"_s, {}},
                  {"no row", {}, {}},
                  {"word", u"'%1 x'"_s, u"13: Max_number of the message nodes is \"%1 x\", which is not a number."_s},
                  {"too large", u"32768"_s,
                   u"6: Max_number of the message nodes is 32768; it must lie from -32768 to 32767."_s}});
    }
    void highestMessageNode()
    {
        QFETCH(QString, given);
        Change(given.isEmpty() ? u"DELETE FROM Node_Type_Max WHERE NodeType_ID = 0"_s
                               : u"UPDATE Node_Type_Max SET Max_number = "_s + given);
        QString found;
        const QString raised = RaisedBy([&] {
            if (const auto highest = HighestMessageNode(*mDataBase, mainPartition))
                found.setNum(*highest);
        });
        QTEST(found + raised, "expected");
    }

    void nodeHeaders_data()
    {
        AddCases({{"as it is", {}, u"Staff|4711|Yes|5"_s},
                  {"nothing",
                   u"NodeDescription = NULL, UsePasswords = NULL, AccessCode = NULL, "
                   "StartingPromptNumber = NULL"_s,
                   u"||No|1"_s},
                  {"highest prompt", u"StartingPromptNumber = 250"_s, u"Staff|4711|Yes|250"_s},
                  {"prompt too high", u"StartingPromptNumber = 251"_s, u"Staff|4711|Yes|1"_s},
                  {"prompt 0, other yes", u"StartingPromptNumber = 0, UsePasswords = -1"_s, u"Staff|4711|No|1"_s},
                  {"fractions", u"StartingPromptNumber = 12.5, UsePasswords = 1.5"_s, u"Staff|4711|No|1"_s},
                  {"words", u"StartingPromptNumber = 'x', UsePasswords = 'x', AccessCode = 'a1-2 3\u0664'"_s,
                   u"Staff|123|No|1"_s}});
    }
    void nodeHeaders()
    {
        QFETCH(QString, given);
        if (!given.isEmpty())
            Change(u"UPDATE Node_DIR SET %1 WHERE NodeNumber = 7"_s.arg(given));
        QTEST(TextOf(Load(7).value().header), "expected");
    }

    void missingValuesOfEntriesAreReplaced()
    {
        Change(u"UPDATE Detail_DIR SET SequenceNo = 99 WHERE NodeMasterID = 31 AND SequenceNo = 3"_s);
        Change(u"UPDATE Detail_DIR SET NamePrompt = CASE SequenceNo WHEN 4 THEN CAST('12.0' AS BLOB) WHEN 5 THEN 12.5 "
               "ELSE 'x' END WHERE NodeMasterID = 31 AND SequenceNo IN (4, 5, 6)"_s);
        const DirectoryNode node = Load(31).value();
        QString found;
        for (const std::size_t row : {0, 1, 2, 3, 4, 5, 6, 7, 8, 11, 12})
            found += TextOf(node.entries[row]) + u'\n';
        const QString longest = u"Abcdefghijklmnopqrstuvwxyzabcde"_s;
        QCOMPARE(found, u"UNKNOWN|UNKNOWN|1|1|1\nUNKNOWN|UNKNOWN|1|1|1\nBaker|UNKNOWN|102|12|1\nClark|John|1|1|1\n"
                        "Davies|Elena|104|1|1\nEvans|Tom|105|5|1\nFoster|Maria|106|1|1\nHarris|Nils|107|999|1\n"
                        "Irving|Olga|108|1|1\n%1|%1|123456789012345|12|12345678901234567890\n"
                        "UNKNOWN|Anne|101|1|1\n"_s.arg(longest));
    }

    void nodesThatCannotBeLoaded()
    {
        QVERIFY(!Load(8));
        Change(u"ALTER TABLE Detail_DIR RENAME COLUMN Extension TO Other"_s);
        QVERIFY(RaisedBy([&] { Load(7); }).contains(u"Extension"_s));
        for (const QString& table : {u"Detail_DIR"_s, u"Node_DIR"_s, u"Node_MSG"_s, u"Node_Type_Max"_s}) {
            Change(u"DROP TABLE "_s + table);
            const QString raised = RaisedBy([&] {
                HighestMessageNode(*mDataBase, mainPartition);
                UsedMessageNodeNumbers(*mDataBase, mainPartition);
                Load(7);
            });
            QVERIFY2(raised.contains(table), qPrintable(raised));
        }
        QVERIFY(RaisedBy([&] { FindDirectoryNodes(*mDataBase, mainPartition); }).contains(u"Node_DIR"_s));
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
            QCOMPARE(TextOf(read.header), TextOf(node.header));
            QVERIFY(read.entries == node.entries);
            node.header.usePasswords = false;
        }
        QCOMPARE(Load(12).value().entries.size(), std::size_t{500});
    }

    // Starting prompt, maximum and configuration; the numbers of successive calls.
    void nextNumbers_data()
    {
        AddCases({{"gaps", u"1 250 1"_s, u"13 27 41 42 50 55 61 62"_s},
                  {"start free", u"13 250 1"_s, u"13 27"_s},
                  {"start in use", u"30 250 1"_s, u"41 42"_s},
                  {"wrapped", u"250 250 1"_s, u"250 13 27"_s},
                  {"wrapped to none", u"61 61 1"_s, u"61 13"_s},
                  {"highest of all", u"32767 32767 1"_s, u"32767 13"_s},
                  {"another configuration", u"1 40 2"_s, u"11 12"_s},
                  {"none free", u"1 12 1"_s, u"0 0"_s},
                  {"start beyond the maximum", u"300 250 1"_s, u"0 0"_s},
                  {"digits and more", u"42x 250 1"_s, u"42 50"_s},
                  {"no digits", u"x 250 1"_s, u"13 27"_s},
                  {"nothing", u" 250 1"_s, u"13 27"_s}});
    }
    void nextNumbers()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        const QStringList values = given.split(u' ');
        Change(u"UPDATE Node_MSG SET NodeNumber = 'x' WHERE NodeNumber = 0"_s); // neither is a number to hand out
        const auto used = UsedMessageNodeNumbers(*mDataBase, {values[2].toShort(), 1});
        PromptNumbers prompts;
        for (int round = 0; round < 2; ++round) {
            QStringList numbers;
            while (numbers.size() <= expected.count(u' '))
                numbers << QString::number(prompts.Next(values[0], values[1].toInt(), used));
            QCOMPARE(numbers.join(u' '), expected);
            prompts.Restart();
        }
    }

    void usedNumbersAreSorted()
    {
        Change(u"DELETE FROM Node_MSG WHERE NodeNumber NOT IN (2, 3, 14, 60)"_s);
        Change(u"UPDATE Node_MSG SET NodeNumber = CASE NodeNumber WHEN 2 THEN 'x' WHEN 3 THEN CAST('13' AS BLOB) "
               "ELSE NodeNumber END"_s);
        QCOMPARE(Joined(UsedMessageNodeNumbers(*mDataBase, mainPartition)), u"13,14,60"_s);
    }

    void nodesInThePool()
    {
        const auto exists = [&](const char* type, const char* number, const Partition& partition = mainPartition) {
            return IsNodeExisted(*mDataBase, partition, QString::fromLatin1(type), QString::fromLatin1(number));
        };
        QVERIFY(exists("16", "7") && exists("0", "60") && exists("817", "60") && exists("818", "0"));
        QVERIFY(exists(" 817 ", "60") && exists("8.18e2", "60"));
        QVERIFY(!exists("16", "8") && !exists("817", "13") && !exists("819", "60") && !exists("8170", "60"));
        QVERIFY(!exists("817", "60", withoutMaximum) && exists("817", "6", withoutMaximum));
    }

    // Prompts and the answers, one for each question; the questions with what is told as made, and what is checked.
    void missingMessageNodes_data()
    {
        AddCases({{"none missing", u"1,2,1>"_s, u"checked 1 2"_s},
                  {"yes, no, another", u"13,1,27,42>239"_s, u"13? 13! 27? 42? checked 13 1 27 42"_s},
                  {"yes to all", u"13,27,1,13,42>34"_s, u"13? 27? 27! 42! checked 13 27 1 42"_s},
                  {"stop", u"13,27,42>25"_s, u"13? 13! 27? checked 13"_s},
                  {"closed", u"13,27>0"_s, u"13? checked "_s},
                  {"twice", u"13,13,13>2"_s, u"13? 13! checked 13"_s}});
    }
    void missingMessageNodes()
    {
        QFETCH(QString, given);
        QTEST(MakeMissing(EntriesWith(given.section(u'>', 0, 0)), given.section(u'>', 1)), "expected");
    }

    void messageNodesAreCopiesOfNode0()
    {
        const std::vector entries{EntryFrom(u"Neil,Anne,1,13"_s)};
        const QString read = u"SELECT KELFilename, m.NodeDescription, DTMF, p.NodeDescription FROM Node_MSG m JOIN "
                             "Node_General_Pool p USING (ConfigID, PartID, NodeTypeID, NodeNumber) WHERE PartID = 1 "
                             "AND NodeNumber = 13"_s;
        QCOMPARE(MakeMissing(entries, u"2"_s), u"13? 13! checked 13"_s);
        QCOMPARE(mSample->Run(read), QStringList(u"P01M013.wav|Anne Neil|0123456789*#|Anne Neil"_s));
        for (const QString& table : {u"Node_MSG"_s, u"Node_General_Pool"_s})
            Change(u"DELETE FROM %1 WHERE NodeTypeID = 0 AND NodeNumber IN (0, 13)"_s.arg(table));
        QCOMPARE(MakeMissing(entries, u"2"_s), u"13? 13! checked 13"_s);
        QCOMPARE(mSample->Run(read), QStringList());
        Change(u"DROP TABLE Node_General_Pool"_s);
        QVERIFY(RaisedBy([&] { MakeMissing(entries, {}); }).contains(u"Node_General_Pool"_s));
    }

    void namesOfMessageNodes()
    {
        QCOMPARE(WaveFileName(1, u"5"_s), u"P01M005.wav"_s);
        QCOMPARE(WaveFileName(12, u"1234"_s), u"P12M1234.wav"_s);
        QCOMPARE(WaveFileName(-5, u"5"_s), u"P-05M005.wav"_s);
        QCOMPARE(WaveFileName(1, u"x y"_s), u"P01Mx y.wav"_s);
        const QString name(15, u'a');
        QCOMPARE(MessageNodeDescription({name, name, {}, {}, {}}), name + u' ' + name);
        QCOMPARE(MessageNodeDescription({name + u"b"_s, name + u"b"_s, {}, {}, {}}), name + u"b "_s + name.first(14));
        QCOMPARE(MessageNodeDescription({name.first(14) + u"\U0001F600"_s, name, {}, {}, {}}),
                 name + u' ' + name.first(14));
    }

    // An entry; what ValidateData says of its fields in one letter each, and whether it may be saved.
    void entries_data()
    {
        AddCases({{"sound", u"Adams,Anne,0123456789012345"_s, u"sound"_s},
                  {"nothing", u",,"_s, u"LFE:No Data in"_s},
                  {"blanks", u" , , "_s, u"LFE:Invalid"_s},
                  {"letters of others", u"\u00c4dams,Anne1,\u0661"_s, u"LFE:Invalid"_s},
                  {"apostrophe", u"O'Neil,Anne,1"_s, u"L:Invalid sound"_s},
                  {"letters about the limits", u"@[`{,azAZ,1"_s, u"L:Invalid sound"_s},
                  {"fraction", u"Adams,Anne,-1.5e3"_s, u"E:Invalid sound"_s},
                  {"too long", u"Adams,Anne,01234567890123456"_s, u"E:Invalid sound"_s}});
    }
    void entries()
    {
        QFETCH(QString, given);
        const DirectoryEntry entry = EntryFrom(given);
        QStringList lines = ValidateData(entry.lastName, entry.firstName, entry.extension).split(u"\r\n"_s);
        QString fields;
        QString kind;
        for (const QString& line : lines.filter(u" "_s)) {
            QVERIFY2(line.startsWith(u"     "_s), qPrintable(line));
            fields += line.section(u' ', -1).front();
            kind = line.section(u' ', 5, -2);
        }
        const QString faults = fields.isEmpty() ? fields : fields + u':' + kind + u' ';
        QTEST((faults + (IsSound(entry) ? u"sound"_s : QString())).trimmed(), "expected");
    }

    void labelsAndCodes()
    {
        QVERIFY(IsAcceptableLabel(u"O'Neil's"_s) && IsAcceptableLabel({}));
        QVERIFY(!IsAcceptableLabel(u"a\"b"_s) && !IsAcceptableLabel(u"a''b"_s));
        QVERIFY(IsAcceptableAccessCode({}) && IsAcceptableAccessCode(u"1234"_s) && !IsAcceptableAccessCode(u"123"_s));
    }

    // Entries as prompts, one without a number as an entry that is not sound; the fault.
    void faults_data()
    {
        AddCases({{"none", u"1,2,3"_s, u"none"_s},
                  {"twice", u"1,2,1,3"_s, u"prompt 2"_s},
                  {"the last one", u"1,2,1,2,3"_s, u"prompt 3"_s},
                  {"not sound behind", u"1,1,x,2,x"_s, u"entry 2"_s},
                  {"not sound first", u"x,1,1"_s, u"entry 0"_s}});
    }
    void faults()
    {
        QFETCH(QString, given);
        std::vector<DirectoryEntry> entries = EntriesWith(given);
        for (DirectoryEntry& entry : entries)
            entry.lastName = entry.prompt == u"x"_s ? QString() : entry.lastName;
        QStringList met;
        const auto fault = FindFault(entries, [&](const QString& prompt) {
            const bool before = met.contains(prompt);
            met << prompt;
            return before;
        });
        QTEST(fault ? (fault->isInvalid ? u"entry %1"_s : u"prompt %1"_s).arg(fault->row) : u"none"_s, "expected");
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
        QCOMPARE(typed("0"), 0);
        QCOMPARE(typed("05"), 0);
        QCOMPARE(typed(""), 0);
        QCOMPARE(typed("12", 5, 20), 0);
        QCOMPARE(typed("99999999999999", 1, 32767), 9999);
    }

    // Bytes, and the fields.
    void fields_data()
    {
        const QString tooLong = u" A field is longer than 8192 bytes. Check that the file is a directory list."_s;
        const QString longest(DelimitedReader::highestFieldLength, u'x');
        const QString zoe = u"[Zo\u00EB][\U0001F600]"_s;
        const auto hex = [](const char* bytes) { return QString::fromLatin1(QByteArray::fromHex(bytes)); };
        AddCases(
            {{"line ends", u"a,b\r\nc,d\re,f\ng"_s, u"[a][b][c][d][e][f][g]"_s},
             {"blank lines", u"a\r\n\r\n\n\rb\r\n\r\n"_s, u"[a][][][][b][]"_s},
             {"blanks and tabs around", u"  \ta b\t ,\t, c \r\n"_s, u"[a b][][c]"_s},
             {"quoted", u"\"a,b\r\nc\" , \" d \"\r\n\"\",\"\"\"\",\"e\"\"f\""_s, u"[a,b\r\nc][ d ][][\"][e\"f]"_s},
             {"quotes inside", u"a\"b,\"c\"d\""_s, u"[a\"b][cd\"]"_s},
             {"unterminated", u"a,\"b\"\",c\r\n"_s, u"[a] The file ends inside a quoted field."_s},
             {"end-of-file character", u"\"a\x1A,b\",c\r\n\x1A,d"_s, u"[a\x1A,b][c]"_s},
             {"nothing but a mark", u"\u00EF\u00BB\u00BF"_s, {}},
             {"UTF-8 mark", hex("EFBBBF 5A6FC3AB 2C F09F9880"), zoe},
             {"UTF-16 LE", hex("FFFE 5A006F00EB00 2C00 3DD800DE"), zoe},
             {"UTF-16 BE", hex("FEFF 005A006F00EB 002C D83DDE00"), zoe},
             {"Windows-1252", hex("5AEB 2C 809F 2C 5A6FC3AB 2C C3"), u"[Z\u00EB][\u20AC\u0178][Zo\u00EB][\u00C3]"_s},
             {"across a chunk", QString(65534, u',') + u"\"a\"\"b\""_s, u"[]"_s.repeated(65534) + u"[a\"b]"_s},
             {"longest", longest + u",\""_s + longest + u'"', u"[%1][%1]"_s.arg(longest)},
             {"too long", u"a,"_s + longest + u"x,c"_s, u"[a]"_s + tooLong}});
    }
    void fields()
    {
        QFETCH(QString, given);
        const QByteArray bytes = given.toLatin1();
        QTEST(FieldsIn(bytes), "expected");
        Stream single(bytes, bytes.size());
        QTEST(FieldsOn(single), "expected");
    }

    void writtenFieldsReadBackEqual()
    {
        const QStringList given{u"\uFEFFa b"_s, u" a"_s,    u"a\t"_s, u"a,b"_s,         u"\"a\"\"b"_s,
                                u"a\r\nb"_s,    u"a\x1A"_s, {},       u"\u4e2d\u00eb"_s};
        QString expected;
        for (const QString& field : given)
            expected += u'[' + field + u']';
        for (const Quoting quoting : {Quoting::Always, Quoting::WhereNeeded})
            QCOMPARE(FieldsIn(DelimitedLine(given, quoting).toUtf8()), expected);
        QCOMPARE(DelimitedLine({u"a b"_s, u"\"c"_s}, Quoting::WhereNeeded), u"a b,\"\"\"c\""_s);
        QCOMPARE(DelimitedLine({u"a"_s, u"1"_s}), u"\"a\",\"1\""_s);
    }

    // What a device without an end repeats, or one that fails holds; the entries taken and what the report says.
    void lists_data()
    {
        AddCases({{"letters", u"A"_s, u"0 broken"_s},
                  {"blanks", u" "_s, u"0 broken"_s},
                  {"quotes", u"\""_s, u"0 broken"_s},
                  {"entries", u"A,B,1\n"_s, u"500 full"_s},
                  {"bad entries", u"A,B,1\n1,B,1\n"_s, u"21 errors"_s},
                  {"failure", u"Adams,Anne,101\nBaker,Ben,102\nClark,..."_s, u"2 broken"_s}});
    }
    void lists()
    {
        QFETCH(QString, given);
        Stream device(given.toLatin1(), given.size() > 35 ? 35 : 8 << 20);
        std::vector<DirectoryEntry> taken;
        const ListReport report =
            ReadEntryList(device, 0, [&](const DirectoryEntry& entry) { taken.push_back(entry); });
        QTEST(QString::number(taken.size()) + (report.broken ? u" broken"_s : QString()) +
                  (report.limitReached ? u" full"_s : QString()) + (report.hadErrors ? u" errors"_s : QString()),
              "expected");
        QVERIFY(device.taken <= 1 << 20);
        QCOMPARE(report.errorList.count(u"(1,B,1) :\r\n     Invalid LastName\r\n"_s), report.hadErrors ? 21 : 0);
        QCOMPARE(report.errorList.contains(u"Too many errors"_s), report.hadErrors);
    }

    void writtenListsReadBackEqual()
    {
        const ListText list = WriteEntryList({EntryFrom(u"Adams,Anne,101,5,1"_s),
                                              EntryFrom(u",Ben,102"_s),
                                              EntryFrom(u"Clark,Carl,x"_s),
                                              {u"O\"Neil, jr"_s, u"\u0141ukasz"_s, u"1e3"_s, {}, {}},
                                              EntryFrom(u"Davies,Dan,104"_s)});
        QCOMPARE(Joined(list.skippedRows), u"1,2"_s);
        QBuffer file;
        file.setData(list.text);
        file.open(QIODevice::ReadOnly);
        QString read;
        const ListReport report =
            ReadEntryList(file, 498, [&](const DirectoryEntry& entry) { read += TextOf(entry) + u' '; });
        QCOMPARE(read, u"Adams|Anne|101|| Davies|Dan|104|| "_s);
        QVERIFY(report.errorList.contains(u"(O\"Neil, jr,\u0141ukasz,1e3) :\r\n     Invalid LastName\r\n     Invalid"
                                          " FirstName\r\n     Invalid Extension\r\n"_s));
        QVERIFY(report.hadErrors && !report.broken && !report.limitReached);
    }
};

QTEST_GUILESS_MAIN(RulesTest)
#include "RulesTest.moc"
