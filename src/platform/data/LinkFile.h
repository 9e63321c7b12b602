// A small text file in the place of a database, which names a server that holds the data.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>

namespace qor {

/// The service that a link names: an entry in the client library's service file, which tells host, database and user.
/// A link is one line, "Provider=PostgreSQL;Service=NAME", with letters, digits, "_", "." and "-" in the name. Nothing
/// for a file that is no link, which other engines may know. Raises RuntimeError for a link that says anything else;
/// its sentence does not repeat what that is.
std::optional<QString> ServiceIn(const QString& fileName);

} // namespace qor
