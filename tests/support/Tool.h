// Programs as a test runs them, and the databases that dir-db leaves.
#pragma once

#include "platform/data/Command.h"
#include "platform/data/Connection.h"
#include "support/Files.h"

#include <QProcess>

namespace qor {

struct Outcome
{
    int exitCode = -1; ///< -1 for a program that did not start or crashed
    QString output;
    QString errors;
};

/// changes: "NAME=value" sets a variable of the environment, "NAME" removes it.
inline Outcome RunProgram(const QString& program, const QStringList& arguments, const QStringList& changes = {})
{
    constexpr int timeLimit = 50'000; // ms
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& change : changes) {
        environment.remove(change.section(u'=', 0, 0));
        if (change.contains(u'='))
            environment.insert(change.section(u'=', 0, 0), change.section(u'=', 1));
    }
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    const bool ended = process.waitForFinished(timeLimit) && process.exitStatus() == QProcess::NormalExit;
    const QString fault = ended ? QString() : process.errorString();
    return {ended ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError()) + fault};
}

/// dir-db, in a shell, which can set limits and redirect.
inline Outcome DirDb(const QStringList& arguments, const QString& script = u"exec \"$@\""_s)
{
    return RunProgram(u"/bin/sh"_s, QStringList{u"-c"_s, script, u"sh"_s, QStringLiteral(DIR_DB)} + arguments);
}

/// The first column of every row; a null text for Null.
inline QStringList Query(const QString& fileName, const QString& text)
{
    Connection connection;
    connection.SetConnectionString(ConnectionStringFor(fileName));
    QStringList values;
    for (Recordset rows = Command(connection, text, text, 0).Open({}); !rows.EndOfFile(); rows.MoveNext())
        values << rows.Field(0).toString();
    return values;
}

} // namespace qor
