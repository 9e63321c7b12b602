// Checks a configuration database and changes nothing in it.
#pragma once

#include "Findings.h"

namespace qor {

class Connection;

struct CheckResult
{
    bool isShared = false;    ///< on a server, where no file can be put in its place
    QStringList reasons = {}; ///< why the database is not sound, in sentences; none for a sound one
    int directoryNodes = 0;
    int entries = 0;
    Findings findings = {}; ///< in the nodes and entries of a sound database
};

/// Why the database is not sound, in sentences: its tables, columns and keys, and the integrity of a file. The
/// integrity of a server's database is up to its administrator.
QStringList FindUnsoundness(Connection& connection);

/// Raises RuntimeError with the first reason.
void RequireSound(Connection& connection, const QString& fileName);

/// recordings: the folder with the wave files of the message nodes; empty to leave them out. Raises RuntimeError for a
/// database that does not open and for a folder that cannot be read.
CheckResult CheckDatabase(const QString& fileName, const QString& recordings = {});

} // namespace qor
