// Directory lists: delimited text, tables and how they are recognised, entries that are refused, how two lists differ.
#include "rules/DelimitedReader.h"
#include "rules/DelimitedWriter.h"
#include "rules/EntryList.h"
#include "rules/NodeDifferences.h"
#include "rules/PlainLetters.h"
#include "support/Cases.h"

#include <QBuffer>

using namespace qor;

namespace {

/// A device that knows no size and hands out its data byte by byte; with another size than the data has it repeats
/// them up to there and then fails.
class Stream : public QIODevice
{
public:
    Stream(QByteArray data, qint64 size) : mData(std::move(data)), mSize(size) { open(ReadOnly | Unbuffered); }
    bool isSequential() const override { return true; }

    qint64 taken = 0;

protected:
    qint64 readData(char* to, qint64 /*room*/) override
    {
        if (taken == mSize)
            return mSize == mData.size() ? 0 : -1;
        *to = mData[static_cast<qsizetype>(taken++ % mData.size())];
        return 1;
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

/// What a file is asked about, without what is the same in each question, and the rows that are read then.
QString TableIn(const QByteArray& bytes)
{
    QBuffer file;
    file.setData(bytes);
    file.open(QIODevice::ReadOnly);
    const auto table = DetectTable(file);
    QString rows = table ? TableSentence(*table).section(u"parted by "_s, 1).replace(u"with the heading "_s, QString())
                         : u"plain"_s;
    ReadEntryList(file, table, 0, [&](const DirectoryEntry& entry) {
        rows += u" ["_s + entry.lastName + u' ' + entry.firstName + u' ' + entry.extension + u']';
    });
    return rows;
}

/// What became no row of a file that is read into a directory of 495 entries: "line last/first/extension", and ! where
/// something is wrong with it. Of many the last four.
QString RefusedIn(const QByteArray& bytes)
{
    QBuffer file;
    file.setData(bytes);
    file.open(QIODevice::ReadOnly);
    const ListReport report = ReadEntryList(file, DetectTable(file), 495, [](const DirectoryEntry&) {});
    QStringList rows;
    for (const auto& [entry, message, line] : report.refused)
        rows << QStringList{u"%1 %2"_s.arg(line).arg(entry.lastName), entry.firstName, entry.extension}.join(u'/') +
                    (message.isEmpty() ? QString() : u"!"_s);
    return rows.mid(std::max<qsizetype>(0, rows.size() - 4)).join(u", "_s) + u' ' + report.fault;
}

} // namespace

class ListsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Bytes, and the fields.
    void fields_data()
    {
        const QString tooLong = u" A field is longer than 8192 bytes. Check that the file is a directory list."_s;
        const QString longest(DelimitedReader::highestFieldLength, u'x');
        const QString zoe = u"[Zo\u00EB][\U0001F600]"_s;
        const auto hex = [](const char* bytes) { return QString::fromLatin1(QByteArray::fromHex(bytes)); };
        AddCases(
            {{"line ends", u"a,b\r\nc\rd\ne\r\n\r\n\n\rf"_s, u"[a][b][c][d][e][][][][f]"_s},
             {"blanks and tabs around", u"  \ta b\t ,\t, c \r\n"_s, u"[a b][][c]"_s},
             {"quoted", u"\"a,b\r\nc\" , \" d \"\r\n\"\",\"e\"\"f\",a\"b,\"c\"d\""_s,
              u"[a,b\r\nc][ d ][][e\"f][a\"b][cd\"]"_s},
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

    // Devices without an end, and one that fails; the entries taken.
    void brokenLists()
    {
        const QByteArray cutOff("Adams,Anne,101\nBaker,Ben,102\nClark,...");
        for (const auto& [text, expected] : {std::pair(QByteArray("A"), 0), {" ", 0}, {"\"", 0}, {cutOff, 2}}) {
            Stream device(text, expected > 0 ? cutOff.size() - 3 : 8 << 20);
            int taken = 0;
            const ListReport report = ReadEntryList(device, 0, [&](const DirectoryEntry&) { ++taken; });
            QVERIFY2(report.broken && device.taken <= 1 << 20, text);
            QCOMPARE(taken, expected);
        }
    }

    // A file, and how it is read.
    void tables_data()
    {
        const auto wide = [](const QString& text) { // every character two bytes
            return QString::fromLatin1("\xFF\xFE") +
                   QString::fromLatin1(reinterpret_cast<const char*>(text.utf16()), 2 * text.size());
        };
        const QString many = u"x;"_s.repeated(297);
        AddCases(
            {{"plain", u"LastName,FirstName,Extension\nM\u00FCller,A,1\nB,C,2"_s, u"plain [B C 2]"_s},
             {"plain without an entry", u"O'Neil,A,1\nB-C,D,2"_s, u"plain"_s},
             {"plain, a value on each line", u"A\nB\n1"_s, u"plain [A B 1]"_s},
             {"plain in part", u"A,B,1,x\nC,D,2,x"_s, u"plain [A B 1]"_s},
             {"no table", u"\"\n;\0\n;;;\r,"_s, u"plain"_s},
             {"captions only", u"Name;Vorname;Nst"_s, u"plain"_s},
             {"half", u"A;B;1\n\n ;;\nO'Neil;C;2"_s, u"semicolons, 1 of 2 lines are entries. [A B 1]"_s},
             {"less than half", u"A;B;1\nO'Neil;C;2\nM;N\n"_s, u"plain"_s},
             {"captions tell", u"Surname;Given name;Ext.\nO'Neil;A;1\nB-C;D;2\nE;F;3"_s,
              u"semicolons, \"Surname;Given name;Ext.\", 1 of 3 lines are entries. [E F 3]"_s},
             {"other order", u"Pr\u00E9nom,Nom,Poste\r\nA,B,1\r\n"_s,
              u"commas, \"Pr\u00E9nom,Nom,Poste\", 1 of 1 lines are entries. [B A 1]"_s},
             {"captions that are not known", u"Desk;EXT;First_Name;Name\n;1;A;B\nx\n;2;C;D"_s,
              u"semicolons, \"Desk;EXT;First_Name;Name\", 2 of 2 lines are entries. [B A 1] [D C 2]"_s},
             {"captions of one meaning", u"Telefon\tName\tVorname\tDurchwahl\tNachname\tNachname\n9\tX\tA\t1\tB\tY"_s,
              u"tabs, \"Telefon\tName\tVorname\tDurchwahl\tNachname\tNachname\", 1 of 1 lines are entries. [B A 1]"_s},
             {"captions again", u"Phone list\n\nName;First;Tel\nA;B;1\nname;FIRST;tel\nC;D;2"_s,
              u"semicolons, \"Name;First;Tel\", 2 of 2 lines are entries. [A B 1] [C D 2]"_s},
             {"named separator", u"\"SEP=,\"\nA,B,1\nC,D,2"_s, u"commas, 2 of 2 lines are entries. [A B 1] [C D 2]"_s},
             {"named tab", u"sep=\t\nLastName\tFirstName\tExtension\n\"A\"\t\"B;C\"\t1"_s,
              u"tabs, \"LastName\tFirstName\tExtension\", 0 of 1 lines are entries."_s},
             {"mixed", u"A,B,1\tC;D;2\nE;F;3;,\nG;H;4;\t"_s,
              u"semicolons, 2 of 3 lines are entries. [E F 3] [G H 4]"_s},
             {"quoted", u"A;\"B\";\"1\";\"x;\"\"\n\ny\"\n\"C;D;2\nE;F;3"_s,
              u"semicolons, 2 of 3 lines are entries. [A B 1] [E F 3]"_s},
             {"many columns", many + u"Name;Vorname;Nst\n"_s + many + u"A;B;1"_s,
              u"semicolons, \"%1\u2026\", 1 of 1 lines are entries. [A B 1]"_s.arg(many.first(120))},
             {"two bytes each", wide(u"A;B;1\n\u0141;C;2\n"_s), u"semicolons, 1 of 2 lines are entries. [A B 1]"_s},
             {"long", u"A;B;1\n"_s.repeated(2500),
              u"semicolons, 2000 of the first 2000 lines are entries."_s + u" [A B 1]"_s.repeated(500)}});
    }
    void tables()
    {
        QFETCH(QString, given);
        QTEST(TableIn(given.toLatin1()), "expected");
    }

    void question()
    {
        QCOMPARE(
            TableQuestion({.separator = ';', .heading = u"Name;First Name;Ext"_s, .lines = 214, .entries = 212}),
            u"This does not look like a plain LastName,FirstName,Extension file.\r\nRead as a table parted by "
            "semicolons, with the heading \"Name;First Name;Ext\", 212 of 214 lines are entries.\r\nDo you want to "
            "read it so?"_s);
    }

    // Files, and what became no row.
    void refused_data()
    {
        const QString bad = u"1,B,x\n"_s;
        const QString past = u"Line 23: The file ends inside an entry."_s;
        AddCases(
            {{"some", u"A,B,\n\"C\n\"\"\",D,2\r\nE,F,3\rG,H,4 4"_s, u"1 A/B/!, 2 C\n\"/D/2!, 5 G/H/4 4! "_s},
             {"behind the last error", bad.repeated(21) + u"A,B,1\nC,D"_s,
              u"20 1/B/x!, 21 1/B/x!, 22 A/B/1, 23 C/D/! "_s + past},
             {"behind the last row", u"A,B,1\n"_s.repeated(6) + bad, u"6 A/B/1, 7 1/B/x! "_s},
             {"of a table", u"A;B;1\n\n"_s.repeated(6) + u"A;;1\n"_s, u"11 A/B/1, 13 A//1! "_s},
             {"broken", u"1,B,x\nA,\"B"_s, u"1 1/B/x! Line 2: The file ends inside a quoted field."_s},
             {"far too many", u",,"_s.repeated(30'003),
              u"1 //!, 1 //!, 1 //!, 1 //! Only the first 20000 of the entries that are left were read. Check that the file is a directory list."_s}});
    }
    void refused()
    {
        QFETCH(QString, given);
        QTEST(RefusedIn(given.toLatin1()), "expected");
    }

    void writtenRefusedEntries()
    {
        const QString longest(DelimitedReader::highestFieldLength - 1, u'x');
        const std::vector<RefusedEntry> refused{
            {{u"O'Neil \"x\",\r\n"_s, u"Jean-Luc"_s, u"12 3\u0664"_s, {}, {}}, {}, 1},
            {{longest + u"\u4e2d"_s, {}, u"\ufeff 5"_s, {}, {}}, {}, 2}};
        QCOMPARE(FieldsIn(RejectedText(refused)),
                 u"[O'Neil \"x\",\r\n][Jean-Luc][12 3\u0664][%1][][\ufeff 5]"_s.arg(longest));
        QCOMPARE(FieldsIn(SuggestedText(refused)), u"[ONeilx][JeanLuc][1234][%1][][5]"_s.arg(longest));
        QCOMPARE(PlainLetters(u"M\u00FCller \u00D8re \u00C6sop Stra\u00DFe Nguy\u1EC5n \u0141uk \u4e2d\U0001F600"_s),
                 u"MullerOreAesopStrasseNguyenLuk"_s);
    }

    void differences()
    {
        const auto entries = [](const QString& text) {
            std::vector<DirectoryEntry> list;
            for (const QString& fields : text.split(u' ', Qt::SkipEmptyParts))
                list.push_back({fields.mid(0, 1), fields.mid(1, 1), fields.mid(2, 1), fields.mid(3, 1), fields.mid(4)});
            return list;
        };
        const auto differences = [&](const QString& before, const QString& after) {
            return DifferencesText(CompareEntries(entries(before), entries(after))) + u": "_s +
                   DifferencesSentences({{}, {}, entries(before)}, {{}, {}, entries(after)}).replace(u"\r\n"_s, u"|"_s);
        };
        QCOMPARE(differences(u"AA11 BB22"_s, u"AA11 BB22"_s), u"+0 -0 ~0: "_s);
        QCOMPARE(differences(u"AA11 BB22"_s, u"BB22 AA11"_s),
                 u"+0 -0 ~0, other order: The entries stand in another order."_s);
        QCOMPARE(differences(u"AA11 AA11 BB22 CC33"_s, u"AA11 AA19 BX22 DD44 EE55"_s),
                 u"+2 -1 ~2: D D: added|E E: added|C C: removed|A A: prompt 1, now 9|B B: now B X"_s);
        QCOMPARE(differences(u"AA11 AA11"_s, u"AA11"_s), u"+0 -1 ~0: A A: removed"_s);
        QCOMPARE(
            differences(u"AA11old BB22 CC33"_s, u"BB22 AA21new"_s),
            u"+0 -1 ~1: C C: removed|A A: extension 1, now 2; another password|The entries stand in another order."_s);
        QCOMPARE(differences({}, u"AA11 BB22 CC33 DD44 EE55 FF66 GG77 HH88 II99 JJ00"_s).section(u"|"_s, 7),
                 u"H H: added|and 2 more"_s);
        const QString name(60, u'x');
        QCOMPARE(DifferencesSentences({{}, {u"%2"_s, u"4711"_s, false, u"1"_s}, {}},
                                      {{}, {u"b"_s, u"12"_s, true, u"5"_s}, {{name, u"a\nb"_s, {}, {}, {}}}}),
                 u"Label: \"%2\", now \"b\"\r\nAccess Code: another one\r\nUse Passwords: No, now Yes\r\n"
                 "Starting Prompt: 1, now 5\r\n"_s +
                     name.left(39) + u"…: added"_s);
    }
};

QTEST_GUILESS_MAIN(ListsTest)
#include "ListsTest.moc"
