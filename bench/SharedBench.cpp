// What a database on a server costs: opening against the same in a file, saving against a loop of the client library
// with the same statements, how often one save waits for the server's disk, and the look at what other stations did. To
// be run by scripts/with-server. With --once every side runs once, which proves no more than that it runs.
#include "form/ConfirmationDialog.h"
#include "Opening.h"
#include "platform/runtime/ErrorReport.h"
#include "rules/NodeLoading.h"
#include "SavingEditor.h"

#include <libpq-fe.h>
#include <QThread>

using namespace qor;

namespace {

constexpr std::array directorySizes{50, 500, 5000};

/// The other side: the statements of a save, prepared once.
class ClientLibrary
{
public:
    ClientLibrary(const ListView& list, qint16 node)
        : mConnection(PQconnectdb("service=" + qgetenv("QOR_SERVICE"))), mNode(QByteArray::number(node))
    {
        for (std::size_t i = 0; i < commands.size(); ++i) {
            const StoredCommand& stored = CatalogEntry(commands[i]);
            QString text = TranslateStoredSql(QString::fromLatin1(stored.sql)).text.remove(u'`');
            Check(PQprepare(mConnection, NameOf(i), text.replace(u'?', u'$').toUtf8(), 0, nullptr));
        }
        for (int row = 0; row < list.Items().RowCount(); ++row) {
            const auto text = [&](DirectoryColumn column) { return EntryText(list, row, column).toUtf8(); };
            mRows.push_back({text(DirectoryColumn::FirstName), text(DirectoryColumn::LastName),
                             text(DirectoryColumn::Extension), text(DirectoryColumn::Prompt),
                             text(DirectoryColumn::Password)});
        }
    }
    ~ClientLibrary() { PQfinish(mConnection); }
    Q_DISABLE_COPY_MOVE(ClientLibrary)

    void Save()
    {
        Check(PQexec(mConnection, "SET synchronous_commit = off"));
        Run(0, {"1", "1", mNode});
        Run(1, {"Size", "0", "", "1", "1", "1", mNode});
        Run(2, {"Size", "1/1/2020 12:00:00 AM", "1", "1", "16", mNode});
        int number = 0;
        for (const QByteArrayList& row : mRows)
            Run(3, QByteArrayList{"1", "1", QByteArray::number(++number), mNode} + row);
        Check(PQexec(mConnection, "SET synchronous_commit = on"));
        Check(PQexec(mConnection, "SELECT pg_logical_emit_message(true, '', '')"));
    }

private:
    static constexpr std::array commands{CommandId::Delete_DIR_DetailsNode, CommandId::Update_DIR_Node,
                                         CommandId::Update_Node_General_Pool, CommandId::Add_Detail_DIR};

    static QByteArray NameOf(std::size_t command) { return QByteArray::number(static_cast<int>(command)); }
    void Check(PGresult* result) const
    {
        const ExecStatusType status = PQresultStatus(result);
        PQclear(result);
        if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
            Fail(QString::fromUtf8(PQerrorMessage(mConnection)));
    }
    void Run(std::size_t command, const QByteArrayList& values)
    {
        std::vector<const char*> texts;
        texts.reserve(static_cast<std::size_t>(values.size()));
        for (const QByteArray& value : values)
            texts.push_back(value.constData());
        Check(PQexecPrepared(mConnection, NameOf(command), static_cast<int>(texts.size()), texts.data(), nullptr,
                             nullptr, 0));
    }

    PGconn* mConnection;
    QByteArray mNode;
    std::vector<QByteArrayList> mRows;
};

/// Per save of 500 entries, while nobody else writes. A session reports what it did with the first command that comes a
/// second later.
double SyncsOfASave(const SampleDatabase& database, int saves)
{
    SavingEditor editor(500);
    const auto syncsSoFar = [&] {
        if (saves > 1)
            QThread::sleep(2);
        editor.Look();
        return database.Run(u"SELECT wal_sync FROM pg_stat_wal"_s).first().toInt();
    };
    editor.SaveAlone();
    const int before = syncsSoFar();
    for (int i = 0; i < saves; ++i)
        editor.SaveAlone();
    return static_cast<double>(syncsSoFar() - before) / saves;
}

/// The tests' server does not wait for the disk. This makes it wait, and lets nothing else write its log meanwhile.
void WaitForDisk(const QByteArray& service)
{
    PGconn* const connection = PQconnectdb("service=" + service);
    for (const char* const text :
         {"ALTER SYSTEM SET fsync = on", "ALTER SYSTEM SET wal_writer_delay = '10s'", "SELECT pg_reload_conf()"})
        PQclear(PQexec(connection, text));
    PQfinish(connection);
}

void CompareOpenings(const SampleDatabase& file, const SampleDatabase& server, int rounds)
{
    PaintClock clock;
    const auto open = [&](const SampleDatabase& database) {
        database.Use();
        return OpenEditor(clock, 1, NodeOfSize(500));
    };
    open(file); // fonts and plugins are loaded by whoever comes first
    open(server);
    Comparison openings;
    for (int round = 0; round < rounds; ++round) {
        const double there = open(server);
        openings.Add(there, open(file));
    }
    openings.Report(u"opening 500 entries on a server, to a file"_s, 1.3);
    server.Use();
}

/// Returns how long our save takes.
double CompareSaves(int size, int rounds)
{
    SavingEditor editor(size);
    ClientLibrary library(editor.List(), NodeOfSize(size));
    editor.Save(); // the message nodes are checked once
    Comparison saves;
    Comparison commands;
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        const double theirs = TimeOf([&] { library.Save(); });
        commands.Add(TimeOf([&] { editor.SaveAlone(); }), theirs);
        times.push_back(TimeOf([&] { editor.Save(); }));
        saves.Add(times.back(), theirs);
    }
    const QString save = u"saving %1 entries on a server, "_s.arg(size);
    commands.Report(save + u"to the client library"_s, 1.6);
    saves.Report(save + u"with all that is kept beside it"_s);
    return Median(times);
}

void TimeLook(int rounds)
{
    DataBase dataBase;
    const NodeIdentity identity{{1, 1}, NodeOfSize(500)};
    const KnownNode known{.stored = LoadNode(dataBase, identity, 250), .attempted = {}};
    std::vector<double> times;
    times.reserve(static_cast<std::size_t>(rounds));
    for (int round = 0; round < rounds; ++round) {
        times.push_back(TimeOf([&] {
            if (!ChangesOfOthers(known, LoadNode(dataBase, identity, 250), 250).isEmpty())
                Fail(u"another station"_s);
        }));
    }
    Report(u"looking at 500 entries on a server before a save"_s, Median(times), u"ms"_s, {}, 5.0);
}

} // namespace

int main(int argc, char** argv)
{
    UseOffscreen();
    const QApplication application(argc, argv);
    SetErrorBox([](const QString& text, const QString& /*title*/, bool /*critical*/) { Fail(text); });
    AddBuiltInClass(confirmationDialogId, MakeConfirmationDialog);
    const int rounds = Rounds(15);
    const QByteArray service = qgetenv("QOR_SERVICE");
    if (service.isEmpty())
        Fail(u"to be run by scripts/with-server"_s);
    qunsetenv("QOR_SERVICE");
    const SampleDatabase file;
    AddMessageNodes(file, 250);
    AddDirectory(file, 500);
    qputenv("QOR_SERVICE", service);
    const SampleDatabase server;
    WaitForDisk(service);
    AddMessageNodes(server, 250);
    for (const int size : directorySizes)
        AddDirectory(server, size);
    CompareOpenings(file, server, rounds);
    TimeLook(rounds);
    std::vector<double> times;
    times.reserve(directorySizes.size());
    for (const int size : directorySizes)
        times.push_back(CompareSaves(size, rounds));
    Report(u"saving 500 entries on a server, waits for the disk"_s, SyncsOfASave(server, rounds), u"syncs"_s, {}, 1.0);
    Report(u"saving 5000 entries on a server, to 500"_s, times[2], u"ms"_s, times[2] / times[1], 12.0);
    return 0;
}
