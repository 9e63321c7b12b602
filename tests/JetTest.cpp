// The import of Jet databases: a real file, copies of it with faults, and what keeps the faults in.

#include "apps/dir-db/jet/Contained.h"
#include "apps/dir-db/jet/JetValues.h"
#include "platform/runtime/RuntimeError.h"
#include "support/Tool.h"

#include <array>
#include <cmath>
#include <csignal>
#include <QTest>
#include <sys/wait.h>
#include <unistd.h>

using namespace qor;

namespace {

QByteArray Utf16(QStringView text)
{
    return {reinterpret_cast<const char*>(text.utf16()), 2 * text.size()};
}

} // namespace

class JetTest : public FileTest
{
    Q_OBJECT

private:
    int Import() { return DirDb({u"import-jet"_s, Path(u"source.mdb"_s), Path(u"new.mdb"_s)}); }

    const QByteArray mSource = ReadFile(QStringLiteral(JET_FILE));
    QString mSaid;

    /// The exit code, or -1 when the program crashed or left something in the folder for temporary files.
    int DirDb(const QStringList& arguments)
    {
        const QString folder = Path(u"tmp"_s);
        const Outcome outcome =
            RunProgram(QStringLiteral(DIR_DB), arguments, {u"TMPDIR="_s + folder, u"MDBICONV=ISO-8859-1"_s});
        mSaid = outcome.errors + outcome.output + EntriesOf(folder).join(u'\n');
        return EntriesOf(folder).isEmpty() ? outcome.exitCode : -1;
    }

private Q_SLOTS:
    void init()
    {
        StartAnew();
        QVERIFY(QDir(Path({})).mkdir(u"tmp"_s));
        WriteFile(Path(u"source.mdb"_s), mSource);
    }

    void readsValues()
    {
        QCOMPARE(JetText(Utf16(u"Dvořák 😀")), u"Dvořák 😀"_s);
        QCOMPARE(JetText("\xff\xfeM\xfcller"), u"Müller"_s);
        QCOMPARE(JetText(QByteArray::fromHex("fffe 41 00 5901 00 42")), u"AřB"_s);
        QVERIFY_THROWS_EXCEPTION(RuntimeError, JetText("abc"));
        QCOMPARE(JetDateText(-1.25), u"1899-12-29 06:00:00"_s);
        QCOMPARE(JetDateText(38055.9999999), u"2004-03-10 00:00:00"_s);
        QVERIFY_THROWS_EXCEPTION(RuntimeError, JetDateText(std::nan("")));
        QVERIFY_THROWS_EXCEPTION(RuntimeError, JetDateText(3'000'000));
    }

    void endsWithItsParent()
    {
        std::array<int, 2> ends{};
        QCOMPARE(pipe(ends.data()), 0);
        const pid_t parent = fork();
        if (parent == 0) {
            RunContained([&] { return write(ends[1], "x", 1), pause(), QByteArray(); },
                         {.processorSeconds = 9, .bytes = 32'000'000});
            _exit(0);
        }
        close(ends[1]);
        char begun = 0;
        QCOMPARE(read(ends[0], &begun, 1), 1);
        kill(parent, SIGKILL);
        waitpid(parent, nullptr, 0);
        QCOMPARE(read(ends[0], &begun, 1), 0); // nobody has the other end any more
        close(ends[0]);
    }

    void containsFaults()
    {
        const auto ending = [](void (*work)()) {
            return RunContained([&] { return work(), QByteArray("done"); },
                                {.processorSeconds = 1, .bytes = 32'000'000})
                .ending;
        };
        QCOMPARE(ending([] { std::signal(SIGSEGV, SIG_DFL), std::raise(SIGSEGV); }), Ending::Failed);
        QCOMPARE(ending([] { throw RuntimeError(ErrorNumber::Provider, u"fault"_s); }), Ending::Failed);
        QCOMPARE(ending([] { QByteArray(256'000'000, 'x').squeeze(); }), Ending::Failed);
        QCOMPARE(ending([] {
                     while (getpid() != 0)
                         continue;
                 }),
                 Ending::TookTooLong);
    }

    void importsTheFile()
    {
        QCOMPARE(Import(), 3);
        for (const char* line : {"Detail_DIR          513 of 513\n", "Tables not taken: Node_MENU\n",
                                 "message node is missing: 486\n", "DIR 7, entry 10: MSG 10\n", "and 466 more\n"})
            QVERIFY2(mSaid.contains(QLatin1String(line)), qPrintable(mSaid));
        QCOMPARE(EntriesOf(mFolder->path()), QStringList({u"new.mdb"_s, u"source.mdb"_s, u"tmp"_s}));
        QVERIFY(ReadFile(Path(u"source.mdb"_s)) == mSource);
        const auto value = [&](const QString& query) { return Query(Path(u"new.mdb"_s), query).value(0); };
        const QString entries =
            u"SELECT group_concat(%1) FROM Detail_DIR WHERE NodeMasterID = 7 AND SequenceNo IN (%2)"_s;
        QCOMPARE(value(entries.arg(u"LastName || FirstName || Extension || Password"_s, u"7"_s)),
                 u"DvořákPetr20061006"_s);
        QCOMPARE(
            value(entries.arg(u"(NamePrompt IS NULL) || (FirstName IS NULL) || (LastName = '')"_s, u"4, 11, 12"_s)),
            u"100,001,010"_s);
        QCOMPARE(value(u"SELECT group_concat(OnOff) FROM Node_MSG"_s), u"1,0,1,0,1,0,1,0,1,0"_s);
        QCOMPARE(value(u"SELECT Comment FROM Node_MSG WHERE NodeNumber = 9"_s),
                 u"A longer comment,\r\nwith a second line; ünïcödé €"_s);
        QCOMPARE(value(u"SELECT NodeDescription || DateModified FROM Node_General_Pool WHERE rowid = 12"_s),
                 u"Service desk – night2004-03-10 14:05:33"_s); // the 12th by its identity, not in the file

        QCOMPARE(Import(), 1);
        QVERIFY2(mSaid.contains(u"exists already"), qPrintable(mSaid));
    }

    void dryRunWritesNothing()
    {
        const QString source = Path(u"source.mdb"_s);
        QCOMPARE(DirDb({u"import-jet"_s, u"--dry-run"_s, source}), 3);
        QVERIFY2(mSaid.contains(u"10 of 10\n") && mSaid.contains(u"missing: 486"), qPrintable(mSaid));
        QCOMPARE(DirDb({u"import-jet"_s, source, Path(u"new.mdb"_s), u"--dry-run"_s}), 3);
        QCOMPARE(DirDb({u"import-jet"_s, u"--dry-run"_s, source, source}), 1);
        QCOMPARE(DirDb({u"import-jet"_s, source}), 2);
        QCOMPARE(EntriesOf(mFolder->path()), QStringList({u"source.mdb"_s, u"tmp"_s}));
    }

    void meetsFaults_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("said");
        const auto row = [](int exitCode, const char* said, const QByteArray& source) {
            QTest::newRow(said) << source << exitCode << QString::fromUtf8(said);
        };
        const auto change = [&](int exitCode, const char* said, const QByteArray& from, const QByteArray& to) {
            row(exitCode, said, QByteArray(mSource).replace(from, to));
        };
        row(1, "it is not a Jet database", "Smith,Anne,101\r\n");
        row(1, "it is a Jet 3 database", QByteArray(mSource).replace(20, 1, QByteArray(1, '\0')));
        change(1, "it is newer than Jet 4", "Jet", "ACE");
        row(1, "it is cut off or damaged", mSource.left(32));
        for (const qsizetype pages : {1, 15, 40, 54})
            QTest::addRow("%d pages", static_cast<int>(pages)) << mSource.left(pages * 4096) << 1 << u"damaged"_s;
        const auto hex = &QByteArray::fromHex;
        change(3, "NodeType_ID) = (1, 1, 0): 2 rows", hex("0400 0100 0200 0000 0000 0f"),
               hex("0400 0100 0100 0000 0000 0f"));
        change(3, "NodeType_ID): 1 rows", hex("0400 0200 0100 0000 e703 0f"), hex("0400 0200 0100 0000 e703 0e"));
        change(3, "Detail_DIR: 513, not 0", hex("59060000 01020000"), hex("59060000 00000000"));
        change(1, "should have 514 rows, but 513", hex("59060000 01020000"), hex("59060000 02020000"));
        change(1, "a long text is cut off", hex("60000040 0035"), hex("61000040 0035"));
        const QByteArray column = hex("59060000 03000000 03000000 0000");
        change(1, "Max_number of its table Node_Type_Max holds texts", '\x03' + column, '\x0a' + column);
        change(1, "Max_number of its table Node_Type_Max has a type", '\x03' + column, '\x05' + column);
        change(3, "  Node_MSG.WarningTone\n", Utf16(u"WarningTone"), Utf16(u"WarningTune"));
        change(3, "not taken: Node_MSG.Warning␛[1m\n", Utf16(u"WarningTone"), Utf16(u"Warning\033[1m"));
        change(1, "Detail_DIR lacks the column SequenceNo", Utf16(u"SequenceNo"), Utf16(u"SequenceNr"));
        change(1, "it has no table Node_MSG", Utf16(u"Node_MSG"), Utf16(u"Node_XXX"));
    }
    void meetsFaults()
    {
        QFETCH(QByteArray, source);
        QFETCH(int, exitCode);
        QFETCH(QString, said);
        WriteFile(Path(u"source.mdb"_s), source);
        QVERIFY2(Import() == exitCode && mSaid.contains(said), qPrintable(mSaid));
        QVERIFY2(exitCode == 3 || mSaid.count(u'\n') == 1, qPrintable(mSaid));
        QCOMPARE(EntriesOf(mFolder->path()).size(), exitCode == 3 ? 3 : 2);
    }
};

QTEST_GUILESS_MAIN(JetTest)
#include "JetTest.moc"
