// How long a save takes and how often it waits for the disk, against the same statements through the engine's C
// interface under the same settings, for directories of several sizes. With --once every side runs once, which
// proves no more than that it runs.
#include "form/ConfirmationDialog.h"
#include "platform/runtime/ErrorReport.h"
#include "SavingEditor.h"

#include <fcntl.h>
#include <QApplication>
#include <sqlite3.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

int syncCount = 0;

} // namespace

// These take the place of the system's, for the engine as well.
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

} // namespace

int main(int argc, char** argv)
{
    UseOffscreen();
    const QApplication application(argc, argv);
    SetErrorBox([](const QString& text, const QString& /*title*/, bool /*critical*/) { Fail(text); });
    const int rounds = Rounds(15);
    AddBuiltInClass(confirmationDialogId, MakeConfirmationDialog);
    const SampleDatabase database;
    AddMessageNodes(database, 250);
    for (const int size : directorySizes) {
        AddDirectory(database, size);
        SavingEditor editor(size);
        Engine engine(database.FileName(), editor.List(), NodeOfSize(size));
        editor.Save(); // the message nodes are checked once
        Comparison saves;
        Comparison costs;
        std::vector<double> drafts;
        int syncs = 0;
        for (int round = 0; round < rounds; ++round) {
            const double theirs = TimeOf([&] { engine.Save(); });
            const int before = syncCount;
            const double ours = TimeOf([&] { editor.Save(); });
            syncs = qMax(syncs, syncCount - before);
            saves.Add(ours, theirs);
            costs.Add(ours, TimeOf([&] { editor.SaveAlone(); }));
            drafts.push_back(TimeOf([&] { editor.KeepDraft(); }));
        }
        const QString save = u"saving %1 entries, "_s.arg(size);
        const bool isFull = size == highestEntryCount;
        saves.Report(save + u"to the engine alone"_s, 1.5);
        costs.Report(save + u"to a save that keeps nothing beside it"_s, 1.15);
        Report(save + u"waits for the disk"_s, syncs, u"syncs"_s, {}, isFull ? std::optional(10.0) : std::nullopt);
        Report(u"keeping a draft of %1 entries"_s.arg(size), Median(drafts), u"ms"_s, {},
               isFull ? std::optional(5.0) : std::nullopt);
    }
    return 0;
}
