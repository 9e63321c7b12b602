// Reads whole files.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>

namespace qor {

/// The contents of a regular file of at most this many bytes; nothing when there is no such file. Raises RuntimeError
/// when it cannot be read, is larger, or is not a regular file: a pipe would never end.
std::optional<QByteArray> ReadWholeFile(const QString& fileName, qint64 highestSize);

} // namespace qor
