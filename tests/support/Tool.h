// dir-db as a test runs it, and the databases that it leaves.
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

inline Outcome RunProgram(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
        return {-1, {}, process.errorString()};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
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
