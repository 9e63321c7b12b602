// How a database is opened that is only looked at.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>
#include <sys/stat.h>

namespace qor {

class Connection;

/// An opened database, in the way that changes least in the file and beside it. Where nothing may be written, it is
/// read without locks if it has to be; then somebody else may change it meanwhile.
class ReadAccess
{
public:
    /// Opens the connection. Raises RuntimeError when that fails; its sentence tells when a log that cannot be read is
    /// the reason.
    ReadAccess(Connection& connection, const QString& fileName);

    /// Raises RuntimeError when the file was changed under a reading without locks. To be asked before what was read is
    /// told.
    void RequireUnchanged() const;

private:
    QString mFileName;
    std::optional<struct stat> mFound; ///< when it is read without locks
};

} // namespace qor
