// A small text file in the place of a database, which names a server that holds the data. Hosts, installations and
// people know a configuration by the name of its file; with a link under that name they need no setting for a server,
// and one file decides for all of them.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>

namespace qor {

/// The service that a link names: an entry in the client library's service file, which has host, database and user. A
/// link is one line, "Provider=PostgreSQL;Service=NAME", with letters, digits, "_", "." and "-" in the name. Nothing
/// for a file that is not a link. Raises RuntimeError for a link that says anything else; the message does not repeat
/// it, since it may be a password.
std::optional<QString> ServiceIn(const QString& fileName);

} // namespace qor
