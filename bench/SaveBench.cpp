// How long a save takes and how often it waits for the disk, against the same statements through the engine's C
// interface under the same settings, for directories of several sizes. With --once every side runs once, which
// proves no more than that it runs.
#include "form/EditorForm.h"
#include "platform/data/Command.h"
#include "platform/runtime/ErrorReport.h"
#include "rules/BusinessRules.h"
#include "rules/ConfirmationDialog.h"

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <sqlite3.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

int syncCount = 0;

} // namespace

// This program's own functions stand before the system's, for the engine too.
extern "C" __attribute__((visibility("default"))) int fsync(int fd)
{
    ++syncCount;
    return static_cast<int>(syscall(SYS_fsync, fd));
}
extern "C" __attribute__((visibility("default"))) int fdatasync(int fildes)
{
    ++syncCount;
    return static_cast<int>(syscall(SYS_fdatasync, fildes));
}

using namespace qor;

namespace {

constexpr std::array directorySizes{50, 500, 5000};

[[noreturn]] void Fail(const QString& reason)
{
    std::fprintf(stderr, "SaveBench: %s\n", qUtf8Printable(reason));
    std::exit(1);
}

qint16 NodeOfSize(int entries)
{
    return static_cast<qint16>(10000 + entries);
}

/// The sample in the folder of application data, with a directory of each size and the message nodes they name. The
/// database's file name.
QString MakeData(const QString& folder)
{
    const QString databaseFolder = folder + u"/Quorvanta/KELDAR+/Database"_s;
    QString database = databaseFolder + u"/NewDB.mdb"_s;
    QDir().mkpath(databaseFolder);
    QProcess dirDb;
    dirDb.start(QStringLiteral(DIR_DB), {u"sample"_s, database});
    if (!dirDb.waitForFinished() || dirDb.exitCode() != 0)
        Fail(QString::fromUtf8(dirDb.readAllStandardError()));
    qputenv("KELDAR_COMMON_APPDATA", QFile::encodeName(folder));
    Connection connection;
    connection.SetConnectionString(u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source="_s + database);
    const auto run = [&](const QString& statement) { Command(connection, statement, statement, 0).Execute({}); };
    const QString numbers = u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1)"_s;
    run(u"INSERT OR IGNORE INTO Node_General_Pool "_s + numbers.arg(250) +
        u"SELECT 1, 1, 0, i, 'MSG', '', '' FROM n"_s);
    for (const int size : directorySizes) {
        run(u"INSERT INTO Node_DIR VALUES (1, 1, 16, %1, 'Size', 0, '', 1)"_s.arg(NodeOfSize(size)));
        run(u"INSERT INTO Node_General_Pool VALUES (1, 1, 16, %1, 'DIR', 'Size', '')"_s.arg(NodeOfSize(size)));
        run(u"INSERT INTO Detail_DIR "_s + numbers.arg(size) +
            u"SELECT 1, 1, %1, i, 'Last' || i, 'First' || i, 1000 + i, i % 250 + 1, '1' FROM n"_s.arg(
                NodeOfSize(size)));
    }
    return database;
}

class BareForm : public EditorForm
{
protected:
    void Form_Load() override {}
    void Form_Activate() override {}
    void Form_Unload(bool& /*cancel*/) override {}
};

/// The component's side: a form that shows a node.
class Editor
{
public:
    explicit Editor(int size) : mNode(NodeOfSize(size))
    {
        mForm.SetConfigID(1);
        mForm.SetPartitionID(1);
        ResetDirectoryListView(*mForm.LVDirectory);
        if (!mRules.LoadPromptMSGNodeNumber(mForm) || !mRules.LoadData(mForm, mNode))
            Fail(u"no node"_s);
    }
    void Save() { mRules.SaveChanges(mForm, mNode); }
    const ListView& List() const { return *mForm.LVDirectory; }

private:
    qint16 mNode;
    BareForm mForm;
    BusinessRules mRules;
};

/// The other side: the statements of a save, prepared once.
class Engine
{
public:
    Engine(const QString& fileName, const ListView& list, qint16 node) : mLog(fileName + u"-wal"_s), mNode(node)
    {
        Check(sqlite3_open_v2(fileName.toUtf8(), &mDatabase, SQLITE_OPEN_READWRITE, nullptr));
        for (std::size_t i = 0; i < mStatements.size(); ++i) {
            const StoredCommand& stored = CatalogEntry(commands[i]);
            const QByteArray text = TranslateStoredSql(QString::fromLatin1(stored.sql)).text.toUtf8();
            Check(sqlite3_prepare_v3(mDatabase, text, -1, SQLITE_PREPARE_PERSISTENT, &mStatements[i], nullptr));
        }
        for (int row = 0; row < list.Items().RowCount(); ++row) {
            const auto text = [&](DirectoryColumn column) { return EntryText(list, row, column).toUtf8(); };
            mRows.push_back({text(DirectoryColumn::FirstName), text(DirectoryColumn::LastName),
                             text(DirectoryColumn::Extension), text(DirectoryColumn::Prompt),
                             text(DirectoryColumn::Password)});
        }
    }
    ~Engine()
    {
        for (sqlite3_stmt* statement : mStatements)
            sqlite3_finalize(statement);
        sqlite3_close(mDatabase);
    }
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    void Save()
    {
        const QByteArray node = QByteArray::number(mNode);
        Check(sqlite3_exec(mDatabase, "PRAGMA synchronous = NORMAL", nullptr, nullptr, nullptr));
        Run(0, {"1", "1", node});
        Run(1, {"Size", "0", "", "1", "1", "1", node});
        Run(2, {"Size", "1/1/2020 12:00:00 AM", "1", "1", "16", node});
        int number = 0;
        for (const QByteArrayList& row : mRows)
            Run(3, QByteArrayList{"1", "1", QByteArray::number(++number), node} + row);
        Check(sqlite3_exec(mDatabase, "PRAGMA synchronous = FULL", nullptr, nullptr, nullptr));
        const int log = open(mLog.toLocal8Bit().constData(), O_RDONLY | O_CLOEXEC);
        if (log < 0 || fsync(log) != 0)
            Fail(u"the log cannot be synced"_s);
        close(log);
    }

private:
    static constexpr std::array commands{CommandId::Delete_DIR_DetailsNode, CommandId::Update_DIR_Node,
                                         CommandId::Update_Node_General_Pool, CommandId::Add_Detail_DIR};

    void Check(int code) const
    {
        if (code != SQLITE_OK && code != SQLITE_DONE)
            Fail(QString::fromUtf8(sqlite3_errmsg(mDatabase)));
    }
    void Run(std::size_t command, const QByteArrayList& values)
    {
        sqlite3_stmt* statement = mStatements[command];
        for (int i = 0; i < values.size(); ++i)
            Check(sqlite3_bind_text(statement, i + 1, values[i].constData(), static_cast<int>(values[i].size()),
                                    SQLITE_STATIC));
        Check(sqlite3_step(statement));
        Check(sqlite3_reset(statement));
    }

    QString mLog;
    qint16 mNode;
    sqlite3* mDatabase = nullptr;
    std::array<sqlite3_stmt*, commands.size()> mStatements{};
    std::vector<QByteArrayList> mRows;
};

double Median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

template <typename Side>
double Time(Side& side)
{
    QElapsedTimer clock;
    clock.start();
    side.Save();
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    SetErrorBox([](const QString& text, const QString& /*title*/, bool /*critical*/) { Fail(text); });
    const int rounds = QCoreApplication::arguments().contains(u"--once"_s) ? 1 : 15;
    AddBuiltInClass(confirmationDialogId, MakeConfirmationDialog);
    const QTemporaryDir folder;
    const QString database = MakeData(folder.path());
    for (const int size : directorySizes) {
        Editor editor(size);
        Engine engine(database, editor.List(), NodeOfSize(size));
        editor.Save(); // the message nodes are checked once
        std::vector<double> ours;
        std::vector<double> theirs;
        std::vector<double> ratios;
        int syncs = 0;
        for (int round = 0; round < rounds; ++round) {
            theirs.push_back(Time(engine));
            const int before = syncCount;
            ours.push_back(Time(editor));
            syncs = qMax(syncs, syncCount - before);
            ratios.push_back(ours.back() / theirs.back());
        }
        std::printf("save of %d entries: %.2f ms against %.2f ms for the engine alone, ratio %.2f (wanted: at most "
                    "1.5); %.1f us an entry; %d syncs at most%s\n",
                    size, Median(ours), Median(theirs), Median(ratios), Median(ours) * 1000 / size, syncs,
                    size == 500 ? " (wanted: at most 10)" : "");
    }
    return 0;
}
