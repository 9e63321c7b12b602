// A database file with one table, and several programs that have it open.
#pragma once

#include "platform/data/Command.h"
#include "platform/data/Connection.h"
#include "platform/data/DeferredSync.h"
#include "support/Cases.h"
#include "support/Files.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

namespace qor {

/// A database that another program has open.
class OtherProgram
{
public:
    explicit OtherProgram(const QString& fileName)
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other"_s);
        database.setDatabaseName(fileName);
    }
    ~OtherProgram() { QSqlDatabase::removeDatabase(u"other"_s); }
    Q_DISABLE_COPY_MOVE(OtherProgram)

    QString Run(const QString& statement)
    {
        QSqlQuery query(QSqlDatabase::database(u"other"_s));
        if (!query.exec(statement))
            qFatal("%s: %s", qPrintable(statement), qPrintable(query.lastError().text()));
        return query.next() ? query.value(0).toString() : QString();
    }
};

/// A connection with a command that adds a row to the table t.
struct Writer
{
    Connection connection;
    Command add{connection, u"Add"_s, u"INSERT INTO t VALUES (?1)"_s, 1};

    explicit Writer(const QString& fileName, const QString& provider = ConnectionStringFor({}))
    {
        connection.SetConnectionString(provider + fileName);
    }

    QString Add(int number)
    {
        return RaisedBy([&] { add.Execute({QString::number(number)}); });
    }
    QString Save(int number)
    {
        return RaisedBy([&] {
            DeferredSync sync(connection);
            add.Execute({QString::number(number)});
            sync.Finish();
        });
    }
    int Answer(const QString& text) { return Command(connection, text, text, 0).Open({}).Field(0).toInt(); }
};

class TableFileTest : public FileTest
{
protected:
    static void MakeTable(const QString& fileName, const QString& journal, const QString& more = u"SELECT 1"_s)
    {
        for (const QString& text : {u"PRAGMA journal_mode = "_s + journal, u"CREATE TABLE t (n UNIQUE)"_s, more})
            OtherProgram(fileName).Run(text);
    }
    /// Whether the file is sound, and its numbers; the empty text when there is none.
    static QString Rows(const QString& fileName)
    {
        if (!QFile::exists(fileName))
            return {};
        OtherProgram other(fileName);
        const QString soundness = other.Run(u"PRAGMA integrity_check"_s);
        return soundness + u' ' + other.Run(u"SELECT group_concat(n) FROM t"_s);
    }
};

} // namespace qor
