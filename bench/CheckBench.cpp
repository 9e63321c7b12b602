// How long dir-db check looks at 2,000,000 entries, against reading them once with one statement: entries without a
// fault, and entries of which each has several. With --once few entries are looked at once, which proves no more than
// that it runs.
#include "apps/dir-db/Check.h"
#include "Bench.h"

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlQuery>

using namespace qor;

namespace {

constexpr double highestRatio = 3;
constexpr int partitionCount = 16;
constexpr int directorySize = 500;

/// Partitions of configuration 9 with this many full directories each, whose entries have message nodes of their own.
void AddDirectories(const SampleDatabase& database, int directoryCount)
{
    database.Run(u"DELETE FROM Detail_DIR"_s);
    const QString numbers =
        u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 500), "
        "p(k) AS (SELECT i FROM n WHERE i <= %1), d(j) AS (SELECT i FROM n WHERE i <= %2) "_s.arg(partitionCount)
            .arg(directoryCount);
    database.Run(u"INSERT INTO Node_Type_Max %1SELECT 9, k, 0, 999 FROM p"_s.arg(numbers));
    database.Run(u"INSERT INTO Node_DIR %1SELECT 9, k, 16, j, 'Label', 0, '', 1 FROM p, d"_s.arg(numbers));
    database.Run(u"INSERT INTO Node_MSG (ConfigID, PartID, NodeTypeID, NodeNumber, KELFilename, NodeDescription) "
                 "%1SELECT 9, k, 0, i, printf('P%02dM%03d.wav', k, i), 'Message ' || i FROM p, n"_s.arg(numbers));
    database.Run(
        u"INSERT INTO Node_General_Pool %1SELECT 9, k, 0, i, 'MSG', 'Message ' || i, '' FROM p, n"_s.arg(numbers));
    database.Run(u"INSERT INTO Detail_DIR %1SELECT 9, k, j, i, 'Lastname', 'Firstname', 1000 + i, i, '1' FROM p, d, n "
                 "WHERE true ORDER BY k, j, i"_s.arg(numbers));
}

double ReadOnce(const QString& fileName)
{
    return TimeOf([&] {
        QSqlQuery rows(QSqlDatabase::database(fileName));
        rows.setForwardOnly(true);
        rows.exec(u"SELECT * FROM Detail_DIR ORDER BY ConfigID, PartID, NodeMasterID, SequenceNo"_s);
        qsizetype read = 0;
        while (rows.next()) {
            for (int i = 0; i < 9; ++i)
                read += rows.value(i).isNull() ? 0 : 1;
        }
        if (read == 0)
            Fail(u"nothing was read"_s);
    });
}

double Look(const QString& fileName, int entryCount)
{
    return TimeOf([&] {
        const CheckResult result = CheckDatabase(fileName);
        if (result.entries != entryCount)
            Fail(u"not every entry was looked at"_s);
    });
}

void Compare(const QString& what, const QString& fileName, int entryCount, int rounds)
{
    Comparison comparison;
    for (int round = 0; round < rounds; ++round) {
        const double look = Look(fileName, entryCount);
        comparison.Add(look, ReadOnce(fileName));
    }
    comparison.Report(u"checking %1 entries %2, to reading them"_s.arg(entryCount).arg(what), highestRatio);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int rounds = Rounds(5);
    const SampleDatabase database;
    const int directoryCount = rounds > 1 ? 250 : 1;
    const int entryCount = partitionCount * directoryCount * directorySize;
    AddDirectories(database, directoryCount);
    Compare(u"without faults"_s, database.FileName(), entryCount, rounds);
    database.Run(u"UPDATE Detail_DIR SET LastName = CAST(x'4dfc6c6c6572' AS TEXT), FirstName = '', Extension = NULL, "
                 "NamePrompt = 600 + SequenceNo % 2"_s);
    Compare(u"with faults in each"_s, database.FileName(), entryCount, rounds);
    return 0;
}
