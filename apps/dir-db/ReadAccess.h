// Opens databases that are only to be read.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>
#include <sys/stat.h>

namespace qor {

class Connection;

/// Opens a database in the way that changes least in the file and beside it. If nothing may be written there, and there
/// is no other way, it is read without locks; then somebody else may change it meanwhile.
class ReadAccess
{
public:
    /// Opens the connection. Raises RuntimeError when that fails; the message says so when the reason is a log that
    /// cannot be read.
    ReadAccess(Connection& connection, const QString& fileName);

    /// Raises RuntimeError when a file that was read without locks has changed since. Call it before reporting what was
    /// read.
    void RequireUnchanged() const;

private:
    QString mFileName;
    std::optional<struct stat> mFound; ///< the file at first, when it is read without locks
};

} // namespace qor
