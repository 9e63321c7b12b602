// Lists into and out of directory nodes without a window, and that this is what the editor does with them.
#include "interchange/IncomingEntries.h"
#include "ListExport.h"
#include "ListImport.h"
#include "support/BareForm.h"
#include "support/Cases.h"
#include "support/Files.h"
#include "support/SampleDatabase.h"

#include <array>
#include <cstdio>
#include <QRandomGenerator>
#include <QScopeGuard>
#include <QTemporaryFile>
#include <sys/stat.h>
#include <unistd.h>

using namespace qor;

namespace {

constexpr qint16 nodeNumber = 7;
const QString oldRow = u"Old|Row|1|5|2"_s;

/// What the body prints on standard output.
template <typename Body>
QString PrintedBy(Body&& body)
{
    QTemporaryFile file;
    if (!file.open())
        qFatal("no temporary file");
    std::fflush(stdout);
    const int output = dup(STDOUT_FILENO);
    dup2(file.handle(), STDOUT_FILENO);
    const auto guard = qScopeGuard([output] {
        std::fflush(stdout);
        dup2(output, STDOUT_FILENO);
        close(output);
    });
    body();
    std::fflush(stdout);
    return QString::fromUtf8(ReadFile(file.fileName()));
}

/// Lists of all kinds.
class Lists
{
public:
    explicit Lists(quint32 seed) : mChance(seed) {}

    QByteArray Next()
    {
        const QString separator = Any({u","_s, u","_s, u","_s, u";"_s, u"\t"_s});
        const QString lineEnd = Any({u"\n"_s, u"\r\n"_s, u"\r"_s});
        const int faultEvery = Any({2, 9, 40, 1000});
        QString text =
            Any({QString(), QString(), u"Vorname%1Nachname%1Durchwahl"_s, u"LastName%1FirstName%1Extension"_s});
        text = text.isEmpty() ? text : text.arg(separator) + lineEnd;
        const int count = Any({0, 3, 30, 200, 600});
        for (int i = 0; i < count; ++i) {
            const bool isFaulty = mChance.bounded(faultEvery) == 0;
            const QStringList fields{isFaulty ? Any({u"M\u00FCller"_s, u"O'Neil"_s, u"\"\"\"x\""_s, QString()})
                                              : u"Smith"_s,
                                     Any({u"Anne"_s, u"\"Ben\""_s, u" Carl "_s}), QString::number(100 + i)};
            text += fields.join(separator) + lineEnd;
        }
        text += Any({QString(), QString(), QString(), u"\"Smith"_s});
        return Any({0, 1}) == 0 ? text.toUtf8() : text.toLatin1();
    }
    template <typename Value>
    Value Any(std::initializer_list<Value> values)
    {
        return values.begin()[mChance.bounded(static_cast<int>(values.size()))];
    }

private:
    QRandomGenerator mChance;
};

} // namespace

class ListToolTest : public FileTest
{
    Q_OBJECT

private:
    std::unique_ptr<SampleDatabase> mSample;

    ListImportRequest Request(const QByteArray& list) const
    {
        WriteFile(Path(u"list.csv"_s), list);
        return {.fileName = mSample->FileName(), .listName = Path(u"list.csv"_s), .node = {{1, 1}, nodeNumber}};
    }
    /// What the editor has in its list after the same import, and what became no row.
    static QStringList RowsInEditor(EditorForm& form, const ListImportRequest& request, ListReport& report)
    {
        BusinessRules rules;
        rules.LoadPromptMSGNodeNumber(form);
        rules.LoadData(form, nodeNumber);
        if (request.replaces)
            form.LVDirectory->Items().Clear();
        QFile file(request.listName);
        file.open(QIODevice::ReadOnly);
        const auto layout = DetectTable(file);
        IncomingRows rows(form, rules);
        report = ReadEntryList(file, layout, static_cast<std::size_t>(form.LVDirectory->Items().RowCount()),
                               [&](const DirectoryEntry& entry) { rows.Add(entry); });
        if (rows.Count() == 0)
            return {oldRow};
        form.LVDirectory->Items().Append(rows.Take());
        QStringList texts;
        for (const DirectoryEntry& entry : EntriesOf(*form.LVDirectory))
            texts << QStringList{entry.lastName, entry.firstName, entry.extension, entry.prompt, entry.password}.join(
                u'|');
        return texts;
    }
    /// Nothing was written, in the database or beside the list.
    void Refuses(const ListImportRequest& request, const QString& expected, int line = __builtin_LINE()) const
    {
        const QStringList files = EntriesOf(mFolder->path());
        const int version = mSample->DataVersion();
        QString raised;
        PrintedBy([&] { raised = RaisedBy([&] { ImportList(request); }); });
        QVERIFY2(raised.contains(expected), qPrintable(u"line %1: %2"_s.arg(line).arg(raised)));
        QVERIFY(mSample->DataVersion() == version && EntriesOf(mFolder->path()) == files);
    }

private Q_SLOTS:
    void init()
    {
        mSample = std::make_unique<SampleDatabase>();
        mSample->SetEntries(nodeNumber, {oldRow});
        StartAnew();
    }

    void sameRowsAsInTheEditor()
    {
        Lists lists(Seed("QOR_LISTS_SEED"));
        mSample->Run(u"UPDATE Node_DIR SET StartingPromptNumber = 200"_s);
        mSample->Run(u"PRAGMA synchronous = OFF"_s); // of what is set up here only
        BareForm form;
        form.Load();
        ResetDirectoryListView(*form.LVDirectory);
        for (int i = 0; i < 200; ++i) {
            mSample->SetEntries(nodeNumber, {oldRow});
            ListImportRequest request = Request(lists.Next());
            request.replaces = lists.Any({false, true});
            request.sharesPrompts = true;
            request.rejectedName = Path(u"rejected.csv"_s);
            ListReport report;
            const QStringList expected = RowsInEditor(form, request, report);
            QFile file(request.listName);
            file.open(QIODevice::ReadOnly);
            request.rule = DetectTable(file) ? ListRule::Table : ListRule::Plain;
            QString raised;
            bool wasWhole = false;
            PrintedBy([&] { raised = RaisedBy([&] { wasWhole = ImportList(request); }); });
            QCOMPARE(!raised.isEmpty(), report.broken || (expected == QStringList{oldRow} && report.refused.empty()));
            QCOMPARE(wasWhole, raised.isEmpty() && report.refused.empty());
            QCOMPARE(mSample->Entries(nodeNumber), raised.isEmpty() ? expected : QStringList{oldRow});
            QCOMPARE(ReadFile(request.rejectedName), raised.isEmpty() ? RejectedText(report.refused) : QByteArray());
            QFile::remove(request.rejectedName);
        }
    }

    // Of 480 people out of a spreadsheet all are in after the second round, without an editor for text.
    void twoRounds()
    {
        const std::array names{"Smith;Anne", "M\xC3\xBCller;Jean-Luc", "\"O'Neil\";Zo\xC3\xAB", "de la Cruz;Tom",
                               "Adams;Ida"};
        QByteArray list("Durchwahl;Nachname;Vorname;Abteilung\r\n");
        for (std::size_t i = 0; i < 480; ++i)
            list += "55" + QByteArray(i % 3 == 0 ? " " : "") + QByteArray::number(100 + i) + ';' + names[i % 5] +
                    ";\"a;b\"\r\n";
        mSample->Run(u"UPDATE Node_Type_Max SET Max_number = 1000"_s);
        ListImportRequest request = Request(list);
        request.replaces = true;
        request.rejectedName = Path(u"rejected.csv"_s);
        request.suggestedName = Path(u"suggested.csv"_s);
        Refuses(
            request,
            u"Read as a table parted by semicolons, with the heading \"Durchwahl;Nachname;Vorname;Abteilung\", 128 of 480 lines"_s);
        request.rule = ListRule::Table;
        QString printed = PrintedBy([&] { QVERIFY(!ImportList(request)); });
        QVERIFY2(printed.contains(u"list.csv, line 480: (de la Cruz,Tom,55578): Invalid LastName\n"_s),
                 qPrintable(printed));

        request = Request(ReadFile(request.suggestedName));
        printed = PrintedBy([&] { QVERIFY(ImportList(request)); });
        QVERIFY2(printed.contains(
                     u"list.csv: 473 entries, 473 taken, 0 refused\n939 free prompt numbers for 473 new entries\n"
                     "DIR 7 in configuration 1, partition 1 holds 480 entries now\n"
                     "Message nodes that do not exist yet: 13, 27, 41-42, 50, 55, 61-534. "_s),
                 qPrintable(printed));
        QStringList entries = mSample->Entries(nodeNumber);
        QVERIFY(entries.size() == 480 && entries[0] == u"Adams|Ida|55104|13|1"_s &&
                entries[479] == u"Adams|Ida|55579|534|1"_s);
        entries.removeDuplicates();
        QCOMPARE(entries.size(), 480);
        QCOMPARE(EntriesOf(mSample->ProductFolder() + u"/Misc/DIRHistory/1-1-7"_s).size(), 2);
    }

    void refusesLists()
    {
        const QByteArray sound("Adams,Anne,101\n");
        Refuses(Request(sound + "B,"), u"Line 2: The file ends inside an entry. Nothing was written."_s);
        Refuses(Request(QByteArray(9000, '\0')), u"Line 1: A field is longer than 8192 bytes"_s);
        Refuses(Request(""), u"holds no entries"_s);
        ListImportRequest request = Request("Adams\tAnne\t101\n");
        Refuses(request, u"Add \"--layout table\""_s);
        request = Request("Adams\n");
        request.rule = ListRule::Table;
        Refuses(request, u"holds no table"_s);
        request = Request(",,x");
        request.replaces = true;
        Refuses(request, {}); // nothing makes way for nothing
        request = Request(sound);
        request.rejectedName = request.suggestedName = request.listName;
        Refuses(request, u"exists already"_s);
        request.rejectedName = request.suggestedName = Path(u"new"_s);
        Refuses(request, u"two names"_s);
        for (const auto& [name, expected] : {std::pair(mFolder->path(), u"is not a file"_s),
                                             {Path(u"pipe"_s), u"is not a file"_s},
                                             {Path(u"none"_s), u"There is no file"_s},
                                             {Path(u"large"_s), u"is larger than"_s}}) {
            request = {.fileName = mSample->FileName(), .listName = name};
            QVERIFY(mkfifo(qPrintable(Path(u"pipe"_s)), 0600) == 0 || errno == EEXIST);
            WriteFile(Path(u"large"_s), {});
            QFile::resize(Path(u"large"_s), 1 << 30);
            Refuses(request, expected);
        }
    }

    // What is changed, and what is said of it.
    void refusesDirectories_data()
    {
        AddCases({{"no node", u"UPDATE Node_DIR SET NodeNumber = 8 WHERE NodeNumber = 7"_s,
                   u"There is no DIR 7 in configuration 1, partition 1."_s},
                  {"no maximum", u"DELETE FROM Node_Type_Max"_s, u"no maximum number of message nodes"_s},
                  {"access code", u"UPDATE Node_DIR SET AccessCode = '123'"_s, u"access code of DIR 7"_s},
                  {"label", u"UPDATE Node_DIR SET NodeDescription = 'a\"b'"_s, u"label of DIR 7"_s},
                  {"entry", u"UPDATE Detail_DIR SET Extension = 'x'"_s, u"Entry 1 of DIR 7"_s},
                  {"too few prompts", u"UPDATE Node_Type_Max SET Max_number = 27"_s,
                   u"the prompts of 1 entry would be those of others, the first of them entry 4 with MSG 1"_s}});
    }
    void refusesDirectories()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        mSample->SetEntries(nodeNumber, {u"Old|Row|1|1|2"_s});
        mSample->Run(given);
        ListImportRequest request = Request("A,B,1\nC,D,2\nE,F,3\n");
        Refuses(request, expected);
        mSample->Run(u"UPDATE Node_DIR SET AccessCode = '', NodeDescription = ''"_s);
        request.replaces = true;
        request.sharesPrompts = true;
        request.dryRun = true;
        Refuses(request, given.contains(u"maximum"_s) || given.contains(u"NodeNumber"_s) ? expected : QString());
    }

    void exports()
    {
        mSample->SetEntries(nodeNumber, {u"M\u00FC\"l ;|D| 1e2|5|2"_s, u"Davies|Ed|x|5|2"_s});
        const QByteArray expected("\"M\xC3\xBC\"\"l ;\",\"D\",\" 1e2\"\r\n");
        ListExportRequest request{.fileName = mSample->FileName(), .node = {{1, 1}, nodeNumber}};
        QCOMPARE(PrintedBy([&] { QVERIFY(!ExportList(request)); }).toUtf8(), expected);
        request.listName = Path(u"out.csv"_s);
        PrintedBy([&] { QVERIFY(!ExportList(request)); });
        QCOMPARE(ReadFile(request.listName), expected);
        QVERIFY(RaisedBy([&] { ExportList(request); }).contains(u"exists already"_s));
        request.node.number = 99;
        request.listName += u'2';
        QVERIFY(RaisedBy([&] { ExportList(request); }).contains(u"There is no DIR 99"_s));
        QCOMPARE(EntriesOf(mFolder->path()), QStringList{u"out.csv"_s});
    }
};

QTEST_MAIN(ListToolTest)
#include "ListToolTest.moc"
