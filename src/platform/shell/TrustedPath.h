// Whether other users could put something of their own where a path leads.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>

namespace qor {

/// A sentence that says why a path is not trusted and what to do; nothing when it is trusted. Every part of a trusted
/// path, from the root on and through every link, belongs to root or to the effective user of this process, and nobody
/// else may write it. Of a path that does not exist, the part that does is judged.
std::optional<QString> TrustProblem(const QString& path);

} // namespace qor
