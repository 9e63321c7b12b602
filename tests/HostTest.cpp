// The built library in its hosts' processes: each test runs a host program, within a time limit, and reads
// what it printed.
#include <QDir>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString library = QStringLiteral(LIBRARY);

/// The lines that hosts and driver print; "*" stands for any text.
const QString staff = u"FORM DIR Editor|40|1 of 4|cmdFirst cmdPrevious cmbNode cmdNext cmdLast lblRecordPosition|*"_s;
const QString everyone = u"FORM DIR Editor|500|2 of 4|*"_s;
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

const QString otherThread = Sentence(u"the call must come on the thread of the application object"_s);
const QString loopEnded = Sentence(u"the host has ended its event loop"_s);
const QString notAWidgetHost =
    Sentence(u"the host's application object cannot show windows; it must be a QApplication"_s);

bool Matches(QStringView line, QStringView pattern)
{
    const auto parts = pattern.split(u'*');
    if (!line.startsWith(parts.first()) || !line.endsWith(parts.last()))
        return false;
    qsizetype from = 0;
    for (const QStringView part : parts) {
        const qsizetype found = line.indexOf(part, from);
        if (found < 0)
            return false;
        from = found + part.size();
    }
    return parts.size() > 1 || line == pattern;
}

bool Match(const QStringList& lines, const QStringList& patterns)
{
    return std::equal(lines.begin(), lines.end(), patterns.begin(), patterns.end(),
                      [](const QString& line, const QString& pattern) { return Matches(line, pattern); });
}

struct Outcome
{
    QString end; ///< "exit code 0", or how else the process ended
    QStringList output;
    QStringList errors;
    QStringList states; ///< locale and signal handlers, before and after

    QByteArray Text() const
    {
        return (u"\n"_s + end + u"\nOutput:\n"_s + output.join(u'\n') + u"\nErrors:\n"_s + errors.join(u'\n')).toUtf8();
    }
};

QStringList Lines(const QByteArray& bytes)
{
    return QString::fromUtf8(bytes).split(u'\n', Qt::SkipEmptyParts);
}

QByteArray ReadFile(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void WriteFile(const QString& fileName, const QByteArray& bytes)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        qFatal("cannot write a test file");
}

void RunStatement(const QString& fileName, const QString& statement)
{
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"spoil"_s);
        database.setDatabaseName(fileName);
        QSqlQuery query(database);
        if (!database.open() || !QSqlQuery(database).exec(statement))
            qFatal("%s: %s", qPrintable(statement), qPrintable(database.lastError().text()));
    }
    QSqlDatabase::removeDatabase(u"spoil"_s);
}

/// Makes a sound database with this name a bad one.
using Spoil = std::function<void(const QString& fileName)>;

Spoil Statement(const QString& statement)
{
    return [statement](const QString& fileName) { RunStatement(fileName, statement); };
}

Spoil Bytes(const QByteArray& bytes)
{
    return [bytes](const QString& fileName) { WriteFile(fileName, bytes); };
}

} // namespace

Q_DECLARE_METATYPE(Spoil)

class HostTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void plainHosts_data();
    void plainHosts();
    void qtHosts_data();
    void qtHosts();
    void displays_data();
    void displays();
    void badDatabases_data();
    void badDatabases();
    void newNodeIsCompact();
    void nothingGrows();
    void exportsItsEntryPointsOnly();
    void registration_data();
    void registration();

private:
    QString Path(const QString& name) const { return mFolder.filePath(name); }
    /// Makes a folder of application data with a copy of the sample; the name of the database.
    QString MakeDataFolder(const QString& name) const;
    Outcome Run(const QStringList& command, const QStringList& changes = {}, int seconds = 20) const;
    Outcome RunPlain(const QStringList& arguments, const QStringList& changes = {}) const;
    void Check(const Outcome& outcome, const QStringList& output, const QStringList& errors = {}) const;

    QTemporaryDir mFolder;
};

QString HostTest::MakeDataFolder(const QString& name) const
{
    const QString folder = Path(name) + u"/Quorvanta/KELDAR+/Database"_s;
    QDir().mkpath(folder);
    const QString database = folder + u"/NewDB.mdb"_s;
    QFile::copy(Path(u"sample.mdb"_s), database);
    return database;
}

/// changes: "NAME=value" sets a variable, "NAME" removes it.
Outcome HostTest::Run(const QStringList& command, const QStringList& changes, int seconds) const
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "LANG"})
        environment.remove(QString::fromLatin1(variable));
    const QStringList all = QStringList{u"LC_ALL=C.UTF-8"_s,
                                        u"QT_QPA_PLATFORM=offscreen"_s,
                                        u"HOST_DRIVER=%1"_s.arg(QStringLiteral(DRIVER)),
                                        u"KELDAR_COMMON_APPDATA="_s + Path(u"good"_s),
                                        u"KELDAR_REGISTRY="_s + Path(u"none.reg"_s),
                                        u"XDG_RUNTIME_DIR="_s + mFolder.path()} +
                            changes;
    for (const QString& change : all) {
        const QString name = change.section(u'=', 0, 0);
        if (change == name)
            environment.remove(name);
        else
            environment.insert(name, change.section(u'=', 1));
    }
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(QFileInfo(library).path());
    process.start(command.first(), command.mid(1));
    const bool ended = process.waitForFinished(seconds * 1000);
    const QString error = process.errorString();
    if (!ended) {
        process.kill();
        process.waitForFinished();
    }
    Outcome outcome{ended ? u"exit code %1"_s.arg(process.exitCode()) : error,
                    Lines(process.readAllStandardOutput()),
                    Lines(process.readAllStandardError()),
                    {}};
    if (ended && process.exitStatus() != QProcess::NormalExit)
        outcome.end = error;
    // What the off-screen platform says of every message box.
    outcome.errors.removeAll(u"This plugin does not support propagateSizeHints()"_s);
    outcome.states = outcome.output.filter(QRegularExpression(u"^STATE "_s));
    for (const QString& state : outcome.states)
        outcome.output.removeOne(state);
    return outcome;
}

Outcome HostTest::RunPlain(const QStringList& arguments, const QStringList& changes) const
{
    QStringList command{QStringLiteral(PLAIN_HOST), arguments.first(), library};
    return Run(command + arguments.mid(1), changes);
}

void HostTest::Check(const Outcome& outcome, const QStringList& output, const QStringList& errors) const
{
    QVERIFY2(outcome.end == u"exit code 0"_s, outcome.Text());
    QVERIFY2(Match(outcome.output, output), outcome.Text() + "\nWanted:\n" + output.join(u'\n').toUtf8());
    QVERIFY2(Match(outcome.errors, errors), outcome.Text() + "\nWanted:\n" + errors.join(u'\n').toUtf8());
    if (!outcome.states.isEmpty())
        QCOMPARE(outcome.states.constLast(), outcome.states.constFirst());
}

void HostTest::initTestCase()
{
    const Outcome made = Run({QStringLiteral(DIR_DB), u"sample"_s, Path(u"sample.mdb"_s)});
    QVERIFY2(made.end == u"exit code 0"_s, made.Text());
    MakeDataFolder(u"good"_s);
}

void HostTest::plainHosts_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("output");
    QTest::addColumn<QStringList>("errors");
    const auto row = [](const char* name, const QStringList& arguments, const QStringList& output,
                        const QStringList& errors = {}) { QTest::newRow(name) << arguments << output << errors; };
    row("an instance for each call", {u"show"_s, u"1,1,7"_s, u"1,1,12"_s}, {staff, Shown(7), everyone, Shown(12)});
    row("one instance", {u"one-instance"_s, u"1,1,7"_s, u"1,1,0"_s, u"1,1,9"_s, u"1,1,7"_s},
        {staff, Shown(7), u"FORM DIR Editor|0|*"_s, Shown(0), node9Missing, Shown(9), staff, Shown(7)});
    row("another thread later", {u"threads"_s, u"1,1,7"_s, u"1,1,12"_s, u"1,1,7"_s},
        {staff, Shown(7), Shown(12), staff, Shown(7)}, {otherThread});
    row("first on a thread that ends", {u"other-thread-first"_s, u"1,1,7"_s, u"1,1,12"_s}, {staff, Shown(7), Shown(12)},
        {otherThread});
    row("late-bound", {u"late-bound"_s, u"1,1,7"_s},
        {staff, u"INVOKE 00000000 type 11 value 0"_s, staff, u"INVOKE 00000000 type 11 value 0"_s});
    row("refusals", {u"refuse"_s}, {u"FAULTS 0"_s});
    QStringList rounds;
    for (int i = 0; i < 20; ++i)
        rounds << staff << Shown(7) << u"UNLOAD 0 1 0 1 0"_s;
    row("loaded and unloaded", {u"unload"_s, u"1,1,7"_s}, rounds << u"MAPPED"_s);
}

void HostTest::plainHosts()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, output);
    QFETCH(QStringList, errors);
    Check(RunPlain(arguments), output, errors);
}

void HostTest::qtHosts_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("driven"); // else the host closes the editor itself
    QTest::addColumn<QStringList>("output");
    QTest::addColumn<QStringList>("errors");
    const auto row = [](const char* name, const QStringList& arguments, bool driven, const QStringList& output,
                        const QStringList& errors = {}) {
        QTest::newRow(name) << arguments << driven << output << errors;
    };
    const QString goesOn = u"LOOP goes on"_s;
    const QString ended5 = u"LOOP ended with 5"_s;
    row("settings of its own", {u"own-settings"_s, u"1,1,7"_s, u"1,1,9"_s, u"1,2,5"_s}, true,
        {staff, Shown(7), node9Missing, Shown(9), Shown(5)});
    row("loop goes on after an editor", {u"loop"_s, u"1,1,7"_s}, true, {staff, Shown(7), goesOn, ended5});
    row("loop goes on after a box", {u"loop"_s, u"1,1,9"_s}, true, {node9Missing, Shown(9), goesOn, ended5});
    row("no windows", {u"core"_s, u"1,1,7"_s, u"1,1,7"_s}, true, {Shown(7), Shown(7)},
        {notAWidgetHost, notAWidgetHost});
    row("windows without widgets", {u"gui"_s, u"1,1,7"_s}, true, {Shown(7)}, {notAWidgetHost});
    row("other thread", {u"other-thread"_s, u"1,1,12"_s, u"1,1,7"_s}, true, {Shown(12), staff, Shown(7)},
        {otherThread});
    row("call from the open editor", {u"reentrant"_s, u"1,1,7"_s, u"1,1,12"_s}, false,
        {Shown(12), u"FIRST open"_s, Shown(7)}, {Sentence(u"an editor is open already; close it first"_s)});
    row("exit before the loop", {u"exit-before-loop"_s, u"1,1,7"_s, u"1,1,7"_s}, true, {Shown(7), Shown(7)},
        {loopEnded, loopEnded});
    row("exit before the loop, box", {u"exit-before-loop"_s, u"1,1,9"_s}, true, {Shown(9)}, {u"QOR_DIR_NODE: *"_s});
    row("exit while open", {u"exit-while-open"_s, u"1,1,7"_s}, false, {Shown(7), ended5}, {loopEnded});
    row("quit while open", {u"quit-while-open"_s, u"1,1,7"_s}, false, {Shown(7), u"LOOP ended with 0"_s});
    row("one application after another", {u"successive-applications"_s, u"1,1,7"_s}, true,
        {staff, Shown(7), staff, Shown(7), staff, Shown(7)});
}

void HostTest::qtHosts()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, driven);
    QFETCH(QStringList, output);
    QFETCH(QStringList, errors);
    Check(Run(QStringList(QStringLiteral(QT_HOST)) + arguments, driven ? QStringList() : QStringList(u"HOST_DRIVER"_s)),
          output, errors);
}

void HostTest::displays_data()
{
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<QString>("error");
    const QString none = u"there is no usable display; set DISPLAY or WAYLAND_DISPLAY"_s;
    const QString platform = u"QT_QPA_PLATFORM"_s;
    const QString noX = u"DISPLAY=:987"_s;
    const QString noWayland = u"WAYLAND_DISPLAY=none-such"_s;
    QTest::newRow("none") << QStringList{platform} << none;
    QTest::newRow("X out of reach") << QStringList{platform, noX} << none;
    QTest::newRow("Wayland out of reach") << QStringList{platform, noWayland, u"XDG_SESSION_TYPE=wayland"_s} << none;
    QTest::newRow("both out of reach") << QStringList{platform, noX, noWayland} << none;
    QTest::newRow("X named, out of reach")
        << QStringList{platform + u"=xcb"_s, noX} << u"the X display cannot be reached; check DISPLAY"_s;
    QTest::newRow("nonsense") << QStringList{platform + u"=nonsense"_s}
                              << u"QT_QPA_PLATFORM names \"nonsense\", which is not installed"_s;
    QTest::newRow("bare screen") << QStringList{platform + u"=linuxfb:fb=/dev/null"_s}
                                 << u"QT_QPA_PLATFORM names \"linuxfb\"; use xcb, wayland or offscreen"_s;
}

void HostTest::displays()
{
    QFETCH(QStringList, changes);
    QFETCH(QString, error);
    Check(RunPlain({u"show"_s, u"1,1,7"_s, u"1,1,9"_s}, changes), {Shown(7), Shown(9)},
          {Sentence(error), Sentence(error)});
}

void HostTest::badDatabases_data()
{
    QTest::addColumn<QString>("call");
    QTest::addColumn<Spoil>("spoil");
    QTest::addColumn<QStringList>("output");
    const auto box = [](const char* procedure, const char* text) {
        return u"BOX Error|Source: QOR_DIR_NODE - %1 /Description: *%2*"_s.arg(QLatin1String(procedure),
                                                                               QLatin1String(text));
    };
    const auto row = [](const char* name, const QString& call, const Spoil& spoil, const QStringList& boxes) {
        QTest::newRow(name) << call << spoil << boxes + QStringList{Shown(call.section(u',', 2).toInt())};
    };
    const QString node7 = u"1,1,7"_s;
    // The record selector and the number lists are read in any case, the node only behind these.
    const auto refusedTwice = [&](const char* text) {
        return QStringList{box("LoadExistingNodesInRecordSelector", text), box("LoadPromptMSGNodeNumber", text)};
    };
    row(
        "no file", node7, [](const QString& fileName) { QFile::remove(fileName); },
        refusedTwice("NewDB.mdb does not exist or cannot be reached."));
    row(
        "folder in its place", node7,
        [](const QString& fileName) { QFile::remove(fileName) && QDir().mkdir(fileName); },
        refusedTwice("NewDB.mdb is not a file."));
    row("empty file", node7, Bytes({}), refusedTwice("NewDB.mdb is empty."));
    row("text", node7, Bytes(QByteArray("Node,Name\r\n").repeated(100)),
        refusedTwice("NewDB.mdb is not a configuration database."));
    row("Jet", node7, Bytes(QByteArray("\0\1\0\0Standard Jet DB\0", 20).leftJustified(4096)),
        refusedTwice("NewDB.mdb is a Jet database"));
    row(
        "cut", node7, [](const QString& fileName) { QFile::resize(fileName, QFileInfo(fileName).size() / 2); },
        refusedTwice("NewDB.mdb is damaged."));
    row("no table of nodes", node7, Statement(u"DROP TABLE Node_DIR"_s),
        {box("LoadExistingNodesInRecordSelector", "lacks a table"), box("LoadData", "lacks a table")});
    row("no table of entries", node7, Statement(u"DROP TABLE Detail_DIR"_s), {box("LoadData", "lacks a table")});
    row("no table of maxima", node7, Statement(u"DROP TABLE Node_Type_Max"_s),
        {box("LoadPromptMSGNodeNumber", "lacks a table")});
    row("maximum too large", node7, Statement(u"UPDATE Node_Type_Max SET Max_number = 99999"_s),
        {box("LoadPromptMSGNodeNumber", "Max_number of the message nodes")});
    const Spoil nothing = [](const QString&) {};
    row("no such node", u"1,1,9"_s, nothing, {node9Missing});
    row("lowest numbers", u"-32768,-32768,-32768"_s,
        Statement(u"UPDATE Node_Type_Max SET Config_ID = -32768, "
                  "PartitionID = -32768 WHERE Config_ID = 2"_s),
        {u"BOX Information|DIR -32768 doesn't exist."_s});
    row("highest number", u"1,1,32767"_s, nothing, {u"BOX Information|DIR 32767 doesn't exist."_s});
    row("no maximum", u"1,2,5"_s, nothing, {});
    row("maximum of 0", node7, Statement(u"UPDATE Node_Type_Max SET Max_number = 0"_s), {});
}

void HostTest::badDatabases()
{
    QFETCH(QString, call);
    QFETCH(Spoil, spoil);
    QFETCH(QStringList, output);
    const QString folder = QString::fromLatin1(QTest::currentDataTag());
    spoil(MakeDataFolder(folder));
    Check(RunPlain({u"show"_s, u"%1@%2"_s.arg(call, Path(folder)), u"1,1,7@"_s + Path(u"good"_s)}),
          output + QStringList{staff, Shown(7)});
}

void HostTest::newNodeIsCompact()
{
    const Outcome outcome = RunPlain({u"show"_s, u"1,1,7"_s, u"1,1,0"_s});
    Check(outcome, {staff, Shown(7), u"FORM DIR Editor|0|1 of 5||*"_s, Shown(0)});
    QVERIFY(outcome.output[2].section(u'|', -1).toInt() < outcome.output[0].section(u'|', -1).toInt());
}

void HostTest::nothingGrows()
{
    const Outcome outcome =
        Run({QStringLiteral(QT_HOST), u"repeat"_s, u"1,1,7"_s, u"1,1,9"_s, u"1,1,0"_s, u"1,2,5"_s}, {}, 100);
    QCOMPARE(outcome.end, u"exit code 0"_s);
    QCOMPARE(outcome.errors, QStringList());
    QCOMPARE(outcome.output.filter(u"CALL"_s).size(), 200);
    QCOMPARE(outcome.output.count(Shown(7)), 50);
    const QString growth = outcome.output.constLast();
    QVERIFY2(Matches(growth, u"GROWTH connections 0 widgets 0 objects 0 descriptors 0 KiB *"_s), qPrintable(growth));
    QVERIFY2(growth.section(u' ', -1).toInt() < 150, qPrintable(growth)); // 1 KiB for each opening
}

void HostTest::exportsItsEntryPointsOnly()
{
    const Outcome outcome = Run({u"nm"_s, u"-D"_s, u"--defined-only"_s, library});
    if (outcome.end != u"exit code 0"_s)
        QSKIP("nm is not installed");
    QStringList names;
    for (const QString& line : outcome.output)
        names << line.section(u' ', -1);
    names.sort();
    const QStringList expected{u"DllCanUnloadNow"_s, u"DllGetClassObject"_s, u"DllRegisterServer"_s,
                               u"DllUnregisterServer"_s};
    QCOMPARE(names, expected);
}

void HostTest::registration_data()
{
    QTest::addColumn<QString>("loadedAs");
    QTest::newRow("absolute path") << library;
    QTest::newRow("relative path") << u"./"_s + QFileInfo(library).fileName();
}

void HostTest::registration()
{
    QFETCH(QString, loadedAs);
    const QString classKey = u"[HKEY_CLASSES_ROOT\\CLSID\\{6E2B8C41-93D7-4F0A-A51C-7B40D2E8369F}"_s;
    const QString fileName = Path(u"registry.reg"_s);
    const QByteArray before = u"Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CLASSES_ROOT\\Other.Rules]\n"
                              "@=\"kept\"\ndamaged \"[\r\n%1-]\r\n\"x\"=hex:1,\\\r\n 2\r\n\r\n"
                              "[HKEY_LOCAL_MACHINE\\QOR_DIR_NODE.BusinessRules]\r\n@=dword:zz\r\n\r\n"_s.arg(classKey)
                                  .toUtf8();
    WriteFile(fileName, before);
    const auto run = [&](const QString& scenario, const QString& registry) {
        return Run({QStringLiteral(PLAIN_HOST), scenario, loadedAs}, {u"KELDAR_REGISTRY="_s + registry});
    };
    for (int i = 0; i < 2; ++i) {
        Check(run(u"register"_s, fileName), {u"REGISTER 00000000"_s});
        const QByteArray registered = ReadFile(fileName);
        QVERIFY2(registered.startsWith(before), registered);
        const QString entry =
            classKey + u"\\InprocServer32]\r\n@=\"%1\"\r\n"_s.arg(QFileInfo(library).canonicalFilePath());
        QVERIFY2(registered.count(entry.toUtf8()) == 1, registered);
        QCOMPARE(registered.count("[HKEY_CLASSES_ROOT\\QOR_DIR_NODE.BusinessRules]"), 1);
    }
    for (int i = 0; i < 2; ++i) {
        Check(run(u"unregister"_s, fileName), {u"UNREGISTER 00000000"_s});
        QCOMPARE(ReadFile(fileName), before);
    }
    Check(run(u"register"_s, u"/proc/none/registry.reg"_s), {u"REGISTER 80040201"_s},
          {u"QOR_DIR_NODE: *registry.reg*"_s});
}

QTEST_GUILESS_MAIN(HostTest)
#include "HostTest.moc"
