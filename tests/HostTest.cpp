// The built library in its hosts' processes: each test runs a host program, within a time limit, and reads what
// it printed.
#include "support/BoxScript.h"
#include "support/Cases.h"
#include "support/SampleDatabase.h"
#include "support/Tool.h"

#include <map>
#include <QLibraryInfo>
#include <QTemporaryDir>
#include <unistd.h>

using namespace qor;

namespace {

const QString library = QStringLiteral(LIBRARY);

/// The lines that hosts and driver print; "*" stands for any text.
const QString staff = u"FORM DIR Editor|40|1 of 4|487"_s;
const QString newNode = u"FORM DIR Editor|0|1 of 5|455"_s;
const QString node7 = u"1,1,7"_s;
const QString node9 = u"1,1,9"_s;
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

Outcome Run(const QStringList& command, const QStringList& changes = {})
{
    return RunProgram(command.first(), command.mid(1),
                      QStringList{u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"LC_ALL=C.UTF-8"_s,
                                  u"QT_QPA_PLATFORM=offscreen"_s, u"HOST_DRIVER="_s + QStringLiteral(DRIVER),
                                  u"XDG_RUNTIME_DIR="_s + qEnvironmentVariable("KELDAR_COMMON_APPDATA")} +
                          changes);
}

/// Those that count: not what the off-screen platform says of every message box.
QStringList Lines(const QString& text, const QString& those = u"^(?!STATE |This plugin does not)"_s)
{
    return text.split(u'\n', Qt::SkipEmptyParts).filter(QRegularExpression(those));
}

void Check(const Outcome& outcome, const QStringList& output, const QStringList& errors = {})
{
    const QByteArray told = (outcome.output + outcome.errors).toUtf8();
    const auto match = [](const QStringList& lines, const QStringList& patterns) {
        return std::equal(lines.begin(), lines.end(), patterns.begin(), patterns.end(), Matches);
    };
    QVERIFY2(outcome.exitCode == 0, told);
    QVERIFY2(match(Lines(outcome.output), output), told);
    QVERIFY2(match(Lines(outcome.errors), errors), told);
    const QStringList states = Lines(outcome.output, u"^STATE "_s); // what the host had set, before and after
    QCOMPARE(states.value(1), states.value(0));
}

QStringList Plain(const QString& scenario, const QStringList& calls = {})
{
    return QStringList{QStringLiteral(PLAIN_HOST), scenario, library} + calls;
}

/// A folder with a platform plug-in that is damaged, or, as "libqincomplete.so", sound but for a library that it needs.
QString PluginFolder(const QString& file)
{
    static std::map<QString, QTemporaryDir> folders;
    QString path = folders[file].path();
    QDir().mkpath(path + u"/platforms"_s);
    QByteArray sound = ReadFile(QLibraryInfo::path(QLibraryInfo::PluginsPath) + u"/platforms/libqoffscreen.so"_s);
    const bool isIncomplete = file == u"libqincomplete.so"_s;
    WriteFile(path + u"/platforms/"_s + file,
              isIncomplete ? sound.replace("libQt6Gui", "libNone6_") : sound.left(5000));
    return path;
}

QStringList WithQt(const QString& scenario, const QStringList& calls)
{
    return QStringList{QStringLiteral(QT_HOST), scenario} + calls;
}

} // namespace

class HostTest : public QObject
{
    Q_OBJECT

private:
    std::optional<SampleDatabase> mSample; ///< where the hosts' environment says

private Q_SLOTS:
    void init()
    {
        mSample.emplace();
        QDir::setCurrent(QFileInfo(library).path());
    }

    void hosts_data()
    {
        QTest::addColumn<QStringList>("command");
        QTest::addColumn<QStringList>("output");
        QTest::addColumn<QStringList>("errors");
        QTest::addColumn<QStringList>("changes");
        const auto row = [](const char* name, const QStringList& command, const QStringList& output,
                            const QStringList& errors = {}, const QStringList& changes = {}) {
            QTest::newRow(name) << command << output << errors << changes;
        };
        const QString otherThread = Sentence(u"the call must come on the thread of the application object"_s);
        const QString loopEnded = Sentence(u"the host has ended its event loop"_s);
        const QString ended = u"LOOP ended with 5"_s;

        row("plain", Plain(u"show"_s, {node7, u"1,1,12"_s, u"1,1,0"_s, node9, u"-32768,-32768,-32768"_s}),
            {staff, Shown(7), u"FORM DIR Editor|500|2 of 4|*"_s, Shown(12), newNode, Shown(0), node9Missing, Shown(9),
             Shown(-32768)});
        row("late-bound, and refusals", Plain(u"refuse"_s), {staff, u"REFUSED"_s});
        // The thread takes what is its own in the library with it; what the toolkit keeps of the library stays.
        row("loaded and unloaded", Plain(u"unload"_s, {u"t1,1,7"_s}), {staff, Shown(7), Shown(7), u"MAPPED"_s},
            {otherThread});

        row("settings, loop and thread of its own", WithQt(u"own-settings"_s, {node7, u"t1,1,12"_s, node9}),
            {staff, Shown(7), Shown(12), node9Missing, Shown(9), ended}, {otherThread});
        row("windows without widgets", WithQt(u"gui"_s, {node7}), {Shown(7)},
            {Sentence(u"the host's application object cannot show windows; it must be a QApplication"_s)});
        const QStringList closesItself{u"HOST_DRIVER"_s};
        row("call from the open editor", WithQt(u"reentrant"_s, {node7, u"1,1,12"_s}),
            {Shown(12), u"FIRST open"_s, Shown(7)}, {Sentence(u"an editor is open already; close it first"_s)},
            closesItself);
        row("exit while open", WithQt(u"exit-while-open"_s, {node7, node9}), {Shown(7), Shown(9), ended},
            {loopEnded, loopEnded}, closesItself);
        // The toolkit keeps statements that are released so late.
        row("one application after another", WithQt(u"successive-applications"_s, {}), {staff, staff, staff}, {},
            {u"ASAN_OPTIONS=detect_leaks=0"_s});

        const auto display = [&](const char* name, const QString& reason, const QStringList& changes) {
            row(name, Plain(u"show"_s, {node7, node9}), {Shown(7), Shown(9)}, {Sentence(reason), Sentence(reason)},
                changes);
        };
        const QString none = u"there is no usable display; set DISPLAY or WAYLAND_DISPLAY"_s;
        const QString platform = u"QT_QPA_PLATFORM"_s;
        const QString noX = u"DISPLAY=:987"_s;
        display("no display", none, {platform});
        display("X out of reach", none, {platform, noX});
        display("Wayland out of reach", none, {platform, u"WAYLAND_DISPLAY=none"_s, u"XDG_SESSION_TYPE=wayland"_s});
        display("X named", u"the X display cannot be reached; check DISPLAY"_s, {platform + u"=xcb"_s, noX});
        display("nonsense named", u"the toolkit's platform plug-in \"nonsense\" is not installed"_s,
                {platform + u"=nonsense"_s});
        display("bare screen named", u"QT_QPA_PLATFORM names \"linuxfb\"; use xcb, wayland or offscreen"_s,
                {platform + u"=linuxfb:fb=/dev/null"_s});
        const auto plugins = [](const QString& file) { return u"QT_PLUGIN_PATH="_s + PluginFolder(file); };
        display("damaged plug-in", u"*/libqnonsense.so is damaged or unreadable; install it again"_s,
                {platform + u"=nonsense"_s, plugins(u"libqnonsense.so"_s)});
        display("plug-in without its libraries", u"*cannot be loaded; install what is missing (*libNone*"_s,
                {plugins(u"libqincomplete.so"_s)});
        row("damaged plug-in before a sound one", Plain(u"show"_s, {node7}), {staff, Shown(7)}, {},
            {plugins(u"libqoffscreen.so"_s)});

        const QStringList fourTimes(4, Sentence(u"the process has hardly a file descriptor left; *"_s));
#ifdef __SANITIZE_ADDRESS__ // which needs descriptors itself, and the rights that it began with
        constexpr bool isSanitized = true;
#else
        constexpr bool isSanitized = false;
#endif
        if (!isSanitized)
            row("few descriptors", Plain(u"crowd"_s, {node7}), QStringList(4, Shown(7)) + QStringList{staff, Shown(7)},
                fourTimes);
        row("closed files", Plain(u"close-files"_s, {node7}), {u"FREE 111"_s});
        row("broken pipe", Plain(u"break-error"_s, {node7}), {Shown(7)}, {}, {platform + u"=nonsense"_s});
        if (geteuid() == 0 && !isSanitized)
            row("other user's rights", Plain(u"other-rights"_s, {node7}), {Shown(7)},
                {u"QOR_DIR_NODE: The registry file *"_s,
                 Sentence(u"the process has taken on another user's rights *"_s)});
    }
    void hosts()
    {
        QFETCH(QStringList, command);
        QFETCH(QStringList, output);
        QFETCH(QStringList, errors);
        QFETCH(QStringList, changes);
        Check(Run(command, changes), output, errors);
    }

    /// The call behind it shows that the host goes on.
    void damagedDatabase()
    {
        const QByteArray good = qgetenv("KELDAR_COMMON_APPDATA");
        const SampleDatabase bad;
        QFile::resize(bad.FileName(), QFileInfo(bad.FileName()).size() / 2);
        const QString box = u"BOX Error|Source: QOR_DIR_NODE - %1 /Description: *NewDB.mdb is damaged *"_s;
        Check(Run(Plain(u"show"_s, {node7, node7 + u'@' + QFile::decodeName(good)})),
              {box.arg(u"LoadExistingNodesInRecordSelector"_s), box.arg(u"LoadPromptMSGNodeNumber"_s), Shown(7), staff,
               Shown(7)});
    }

    void nothingGrows()
    {
        const Outcome outcome = Run(WithQt(u"repeat"_s, {node7, node9, u"1,1,0"_s, u"1,2,5"_s}));
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.output.count(staff), 50);
        const QString growth = outcome.output.section(u'\n', -2).trimmed();
        QVERIFY2(Matches(growth, u"GROWTH 0 0 0 0 *"_s), qPrintable(growth));
        QVERIFY2(growth.section(u' ', -1).toInt() < 160 * 1024, qPrintable(growth)); // less than 1 KiB an opening
    }

    void exportsItsEntryPointsOnly()
    {
        const Outcome outcome = Run({u"nm"_s, u"-D"_s, u"--defined-only"_s, library});
        if (outcome.exitCode != 0)
            QSKIP("nm is not installed");
        Check(outcome, {u"* T DllCanUnloadNow"_s, u"* T DllGetClassObject"_s, u"* T DllRegisterServer"_s,
                        u"* T DllUnregisterServer"_s});
    }

    void registration_data()
    {
        static const QTemporaryDir folder;
        const QString copy = QFileInfo(folder.path()).canonicalFilePath() + u"/copy.so"_s;
        QFile::copy(library, copy);
        WriteFile(folder.filePath(QStringLiteral(LIBRARY_SONAME)), "another version");
        // An update puts another file behind the lasting name.
        AddCases({{"relative path", u"./"_s + QFileInfo(library).fileName(),
                   QFileInfo(library).canonicalPath() + u'/' + QStringLiteral(LIBRARY_SONAME)},
                  {"copy beside another version", copy, copy}});
    }
    void registration()
    {
        QFETCH(QString, given);
        QFETCH(QString, expected);
        const QByteArray before = "Windows Registry Editor Version 5.00\r\n\r\n"
                                  "[HKEY_CLASSES_ROOT\\QOR_DIR_NODE.BusinessRules]\r\n\"other's\"=\"kept\"\r\n";
        const QString fileName = qEnvironmentVariable("KELDAR_REGISTRY");
        WriteFile(fileName, before);
        const auto enter = [&](const QString& name, const QStringList& changes = {}) {
            return Run({QStringLiteral(PLAIN_HOST), u"enter"_s, given, name}, changes);
        };
        Check(enter(u"DllRegisterServer"_s), {u"ENTERED 00000000"_s});
        const QString entry =
            u"{6E2B8C41-93D7-4F0A-A51C-7B40D2E8369F}\\InprocServer32]\r\n@=\"%1\"\r\n"_s.arg(expected);
        QVERIFY2(ReadFile(fileName).contains(entry.toUtf8()), ReadFile(fileName));
        for (int i = 0; i < 2; ++i) {
            Check(enter(u"DllUnregisterServer"_s), {u"ENTERED 00000000"_s});
            QCOMPARE(ReadFile(fileName), before);
        }
        Check(enter(u"DllRegisterServer"_s, {u"KELDAR_REGISTRY=/proc/none/registry.reg"_s}), {u"ENTERED 80040201"_s},
              {u"QOR_DIR_NODE: *registry.reg*"_s});
    }
};

QTEST_GUILESS_MAIN(HostTest)
#include "HostTest.moc"
