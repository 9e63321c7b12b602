// Finds moments at which no node is being saved, since a save is many commits.
#pragma once

#include "platform/runtime/Text.h"

#include <QFile>

namespace qor {

class Connection;

/// While it lives, no save of the database in this file begins; at first it waits for the end of those that have begun.
/// A save locks one byte of NAME-saving, an empty file beside the database; which byte is its own matter.
class PauseOfSaves
{
public:
    /// Raises RuntimeError when a save does not end.
    explicit PauseOfSaves(const QString& fileName);

private:
    bool Lock();

    QFile mLocked;
};

/// While it lives, what is read shows the database, in a file or on a server, as it was at one moment outside of a
/// save. Others go on saving.
class StillReading
{
public:
    /// Raises RuntimeError when a save does not end.
    StillReading(Connection& connection, const QString& fileName);
    ~StillReading();
    Q_DISABLE_COPY_MOVE(StillReading)

private:
    bool IsQuiet();
    void Run(const QString& statement);
    void End();

    Connection& mConnection;
};

} // namespace qor
