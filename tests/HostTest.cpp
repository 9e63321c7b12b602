// The built library in its hosts' processes: each test runs a host program, within a time limit, and reads what
// it printed.
#include "support/BoxScript.h"
#include "support/Files.h"
#include "support/SampleDatabase.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace qor;

namespace {

const QString library = QStringLiteral(LIBRARY);

/// The lines that hosts and driver print; "*" stands for any text.
const QString staff = u"FORM DIR Editor|40|1 of 4|487"_s;
const QString newNode = u"FORM DIR Editor|0|1 of 5|455"_s;
const QString node9Missing = u"BOX Information|DIR 9 doesn't exist."_s;

QString Shown(int node)
{
    return u"CALL %1 00000000 0"_s.arg(node);
}

/// What standard error says of a call that shows nothing.
QString Sentence(const QString& reason)
{
    return u"QOR_DIR_NODE: the editor cannot be shown: %1."_s.arg(reason);
}

bool Match(const QStringList& lines, const QStringList& patterns)
{
    return std::equal(lines.begin(), lines.end(), patterns.begin(), patterns.end(), Matches);
}

QStringList Lines(const QByteArray& bytes)
{
    return QString::fromUtf8(bytes).split(u'\n', Qt::SkipEmptyParts);
}

struct Outcome
{
    QString end; ///< "exit code 0", or how else the process ended
    QStringList output;
    QStringList errors;
    QStringList states; ///< what the host had set, before and after

    QByteArray Text() const
    {
        return (end + u"\nOutput:\n"_s + output.join(u'\n') + u"\nErrors:\n"_s + errors.join(u'\n')).toUtf8();
    }
};

/// changes: "NAME=value" sets a variable of the environment, "NAME" removes it.
Outcome Run(const QStringList& command, const QStringList& changes = {}, int seconds = 20)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& change :
         QStringList{u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"LC_ALL=C.UTF-8"_s, u"QT_QPA_PLATFORM=offscreen"_s,
                     u"XDG_RUNTIME_DIR="_s + qEnvironmentVariable("KELDAR_COMMON_APPDATA"),
                     u"HOST_DRIVER="_s + QStringLiteral(DRIVER)} +
             changes) {
        environment.remove(change.section(u'=', 0, 0));
        if (change.contains(u'='))
            environment.insert(change.section(u'=', 0, 0), change.section(u'=', 1));
    }
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(QFileInfo(library).path());
    process.start(command.first(), command.mid(1));
    const bool ended = process.waitForFinished(seconds * 1000);
    Outcome outcome;
    outcome.end = ended && process.exitStatus() == QProcess::NormalExit ? u"exit code %1"_s.arg(process.exitCode())
                                                                        : process.errorString();
    process.kill();
    process.waitForFinished();
    for (const QString& line : Lines(process.readAllStandardOutput()))
        (line.startsWith(u"STATE ") ? outcome.states : outcome.output) << line;
    // Not what the off-screen platform says of every message box.
    outcome.errors = Lines(process.readAllStandardError()).filter(QRegularExpression(u"^(?!This plugin does not)"_s));
    return outcome;
}

void Check(const Outcome& outcome, const QStringList& output, const QStringList& errors = {})
{
    QVERIFY2(outcome.end == u"exit code 0", outcome.Text());
    QVERIFY2(Match(outcome.output, output), outcome.Text() + "\nWanted:\n" + output.join(u'\n').toUtf8());
    QVERIFY2(Match(outcome.errors, errors), outcome.Text() + "\nWanted:\n" + errors.join(u'\n').toUtf8());
    if (!outcome.states.isEmpty())
        QCOMPARE(outcome.states.last(), outcome.states.first());
}

QStringList Repeated(const QStringList& lines, int count)
{
    return count == 0 ? QStringList() : Repeated(lines, count - 1) + lines;
}

QStringList Plain(const QString& scenario, const QStringList& calls = {})
{
    return QStringList{QStringLiteral(PLAIN_HOST), scenario, library} + calls;
}

QStringList WithQt(const QString& scenario, const QStringList& calls)
{
    return QStringList{QStringLiteral(QT_HOST), scenario} + calls;
}

} // namespace

class HostTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void hosts_data();
    void hosts();
    void displays_data();
    void displays();
    void badDatabases_data();
    void badDatabases();
    void nothingGrows();
    void exportsItsEntryPointsOnly();
    void registration_data();
    void registration();

private:
    std::optional<SampleDatabase> mSample; ///< where the hosts' environment says
};

/// One sample serves all tests but those that make one of their own.
void HostTest::init()
{
    if (!QFile::exists(qEnvironmentVariable("KELDAR_COMMON_APPDATA")))
        mSample.emplace();
}

void HostTest::hosts_data()
{
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<QStringList>("output");
    QTest::addColumn<QStringList>("errors");
    const auto row = [](const char* name, const QStringList& command, const QStringList& output,
                        const QStringList& errors = {}) { QTest::newRow(name) << command << output << errors; };
    const QString otherThread = Sentence(u"the call must come on the thread of the application object"_s);
    const QString loopEnded = Sentence(u"the host has ended its event loop"_s);
    const QString ended5 = u"LOOP ended with 5"_s;
    const QString node7 = u"1,1,7"_s;

    row("plain", Plain(u"show"_s, {node7, u"1,1,12"_s, u"1,1,0"_s, u"1,1,9"_s}),
        {staff, Shown(7), u"FORM DIR Editor|500|2 of 4|*"_s, Shown(12), newNode, Shown(0), node9Missing, Shown(9)});
    row("plain, first thread ends", Plain(u"show"_s, {u"t1,1,7"_s, u"1,1,12"_s}), {staff, Shown(7), Shown(12)},
        {otherThread});
    row("late-bound, and refusals", Plain(u"refuse"_s), {staff, u"REFUSED"_s});
    row("loaded and unloaded", Plain(u"unload"_s, {node7}), Repeated({staff, Shown(7)}, 20) << u"MAPPED"_s);

    row("settings of its own", WithQt(u"own-settings"_s, {node7, u"1,1,9"_s, u"1,2,5"_s}),
        {staff, Shown(7), node9Missing, Shown(9), Shown(5)});
    row("loop goes on", WithQt(u"loop"_s, {node7, u"1,1,9"_s}), {staff, Shown(7), node9Missing, Shown(9), ended5});
    row("windows without widgets", WithQt(u"gui"_s, {node7}), {Shown(7)},
        {Sentence(u"the host's application object cannot show windows; it must be a QApplication"_s)});
    row("other thread", WithQt(u"widgets"_s, {u"t1,1,12"_s, node7}), {Shown(12), staff, Shown(7)}, {otherThread});
    row("call from the open editor", WithQt(u"reentrant"_s, {node7, u"1,1,12"_s}),
        {Shown(12), u"FIRST open"_s, Shown(7)}, {Sentence(u"an editor is open already; close it first"_s)});
    row("exit before the loop", WithQt(u"exit-before-loop"_s, {node7, u"1,1,9"_s}), {Shown(7), Shown(9)},
        {loopEnded, u"QOR_DIR_NODE: *"_s});
    row("exit while open", WithQt(u"leave-while-open"_s, {u"exit"_s, node7}), {Shown(7), ended5}, {loopEnded});
    row("quit while open", WithQt(u"leave-while-open"_s, {u"quit"_s, node7}), {Shown(7), u"LOOP ended with 0"_s});
    row("one application after another", WithQt(u"successive-applications"_s, {}), {staff, staff, staff});
}

void HostTest::hosts()
{
    QFETCH(QStringList, command);
    QFETCH(QStringList, output);
    QFETCH(QStringList, errors);
    QStringList changes;
    if (command.contains(u"reentrant"_s) || command[1].endsWith(u"while-open")) // the host closes it
        changes << u"HOST_DRIVER"_s;
    if (command.contains(u"successive-applications"_s)) // the toolkit keeps statements that are released so late
        changes << u"ASAN_OPTIONS=detect_leaks=0"_s;
    Check(Run(command, changes), output, errors);
}

void HostTest::displays_data()
{
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<QString>("reason");
    const QString none = u"there is no usable display; set DISPLAY or WAYLAND_DISPLAY"_s;
    const QString platform = u"QT_QPA_PLATFORM"_s;
    const QString noX = u"DISPLAY=:987"_s;
    const QString noWayland = u"WAYLAND_DISPLAY=none-such"_s;
    QTest::newRow("none") << QStringList{platform} << none;
    QTest::newRow("X out of reach") << QStringList{platform, noX} << none;
    QTest::newRow("Wayland out of reach") << QStringList{platform, noWayland, u"XDG_SESSION_TYPE=wayland"_s} << none;
    QTest::newRow("X named") << QStringList{platform + u"=xcb"_s, noX}
                             << u"the X display cannot be reached; check DISPLAY"_s;
    QTest::newRow("nonsense") << QStringList{platform + u"=nonsense"_s}
                              << u"QT_QPA_PLATFORM names \"nonsense\", which is not installed"_s;
    QTest::newRow("bare screen") << QStringList{platform + u"=linuxfb:fb=/dev/null"_s}
                                 << u"QT_QPA_PLATFORM names \"linuxfb\"; use xcb, wayland or offscreen"_s;
}

void HostTest::displays()
{
    QFETCH(QStringList, changes);
    QFETCH(QString, reason);
    Check(Run(Plain(u"show"_s, {u"1,1,7"_s, u"1,1,9"_s}), changes), {Shown(7), Shown(9)},
          {Sentence(reason), Sentence(reason)});
}

void HostTest::badDatabases_data()
{
    QTest::addColumn<QString>("ids");
    QTest::addColumn<QString>("statement"); // none halves the file
    QTest::addColumn<QStringList>("output");
    const auto box = [](const QString& procedure, const QString& text) {
        return u"BOX Error|Source: QOR_DIR_NODE - %1 /Description: *%2*"_s.arg(procedure, text);
    };
    const auto row = [](const char* name, const QString& ids, const QString& statement, const QStringList& boxes) {
        QTest::newRow(name) << ids << statement << boxes;
    };
    const QString damaged = u"NewDB.mdb is damaged."_s;
    row("cut", u"1,1,7"_s, {},
        {box(u"LoadExistingNodesInRecordSelector"_s, damaged), box(u"LoadPromptMSGNodeNumber"_s, damaged)});
    row("no table of entries", u"1,1,7"_s, u"DROP TABLE Detail_DIR"_s,
        {box(u"LoadData"_s, u"NewDB.mdb lacks a table"_s)});
    row("lowest numbers", u"-32768,-32768,-32768"_s,
        u"UPDATE Node_Type_Max SET Config_ID = -32768, PartitionID = -32768 WHERE Config_ID = 2"_s,
        {u"BOX Information|DIR -32768 doesn't exist."_s});
    row("no maximum", u"1,1,7"_s, u"DELETE FROM Node_Type_Max"_s, {});
}

/// The call behind the bad database shows that the host goes on.
void HostTest::badDatabases()
{
    QFETCH(QString, ids);
    QFETCH(QString, statement);
    QFETCH(QStringList, output);
    const QByteArray good = qgetenv("KELDAR_COMMON_APPDATA");
    const SampleDatabase bad;
    if (statement.isEmpty())
        QFile::resize(bad.FileName(), QFileInfo(bad.FileName()).size() / 2);
    else
        bad.Run(statement);
    Check(Run(Plain(u"show"_s, {ids, u"1,1,7@"_s + QFile::decodeName(good)})),
          output + QStringList{Shown(ids.section(u',', 2).toInt()), staff, Shown(7)});
}

void HostTest::nothingGrows()
{
    const Outcome outcome = Run(WithQt(u"repeat"_s, {u"1,1,7"_s, u"1,1,9"_s, u"1,1,0"_s, u"1,2,5"_s}), {}, 50);
    QVERIFY2(outcome.end == u"exit code 0" && outcome.errors.isEmpty(), outcome.Text());
    QCOMPARE(outcome.output.count(staff), 50);
    QCOMPARE(outcome.output.count(Shown(7)), 50);
    const QString growth = outcome.output.last();
    QVERIFY2(Matches(growth, u"GROWTH 0 0 0 0 *"_s), qPrintable(growth));
    QVERIFY2(growth.section(u' ', -1).toInt() < 160 * 1024, qPrintable(growth)); // less than 1 KiB an opening
}

void HostTest::exportsItsEntryPointsOnly()
{
    const Outcome outcome = Run({u"nm"_s, u"-D"_s, u"--defined-only"_s, library});
    if (outcome.end != u"exit code 0")
        QSKIP("nm is not installed");
    Check(outcome, {u"* T DllCanUnloadNow"_s, u"* T DllGetClassObject"_s, u"* T DllRegisterServer"_s,
                    u"* T DllUnregisterServer"_s});
}

void HostTest::registration_data()
{
    QTest::addColumn<QString>("loadedAs");
    QTest::addColumn<QString>("registered");
    // An update puts another file behind this name.
    const QString lasting = QFileInfo(library).canonicalPath() + u'/' + QStringLiteral(LIBRARY_SONAME);
    static const QTemporaryDir folder;
    const QString copy = QFileInfo(folder.path()).canonicalFilePath() + u"/copy.so"_s;
    QTest::newRow("absolute path") << library << lasting;
    QTest::newRow("relative path") << u"./"_s + QFileInfo(library).fileName() << lasting;
    QTest::newRow("copy beside another version") << copy << copy;
    QFile::copy(library, copy);
    WriteFile(folder.filePath(QStringLiteral(LIBRARY_SONAME)), "another version");
}

void HostTest::registration()
{
    QFETCH(QString, loadedAs);
    QFETCH(QString, registered);
    const QString classKey = u"[HKEY_CLASSES_ROOT\\CLSID\\{6E2B8C41-93D7-4F0A-A51C-7B40D2E8369F}"_s;
    const QByteArray before =
        u"Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CLASSES_ROOT\\Other.Rules]\n@=\"kept\"\n"
        "damaged \"[\r\n%1-]\r\n\"x\"=hex:1,\\\r\n 2\r\n\r\n"
        "[HKEY_CLASSES_ROOT\\QOR_DIR_NODE.BusinessRules]\r\n\"other's\"=\"kept\"\r\n"
        "[HKEY_LOCAL_MACHINE\\QOR_DIR_NODE.BusinessRules]\r\n@=dword:zz"_s.arg(classKey)
            .toUtf8();
    const QByteArray entry = u"%1\\InprocServer32]\r\n@=\"%2\"\r\n"_s.arg(classKey, registered).toUtf8();
    const QString fileName = qEnvironmentVariable("KELDAR_REGISTRY");
    WriteFile(fileName, before);
    const auto run = [&](const QString& scenario, const QStringList& changes = {}) {
        return Run({QStringLiteral(PLAIN_HOST), scenario, loadedAs}, changes);
    };
    for (int i = 0; i < 2; ++i) {
        Check(run(u"register"_s), {u"REGISTER 00000000"_s});
        const QByteArray after = ReadFile(fileName);
        QVERIFY2(after.count(entry) == 1 && after.contains("\n\"other's\"=\"kept\"\r\n"), after);
        QCOMPARE(after.count("[HKEY_CLASSES_ROOT\\QOR_DIR_NODE.BusinessRules]"), 1);
    }
    for (int i = 0; i < 2; ++i) {
        Check(run(u"unregister"_s), {u"UNREGISTER 00000000"_s});
        QCOMPARE(ReadFile(fileName), before);
    }
    Check(run(u"register"_s, {u"KELDAR_REGISTRY=/proc/none/registry.reg"_s}), {u"REGISTER 80040201"_s},
          {u"QOR_DIR_NODE: *registry.reg*"_s});
}

QTEST_GUILESS_MAIN(HostTest)
#include "HostTest.moc"
