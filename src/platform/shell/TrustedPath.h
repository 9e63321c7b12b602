// Whether others could put something of their own where a path leads.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>

namespace qor {

/// The sentence that says why a path is not trusted and what to do; nothing when it is. Every part of a trusted path,
/// from the root on and through every link, belongs to root or to the effective user of this process, and nobody else
/// may write it. Where a part is not there yet, only those before it are looked at.
std::optional<QString> TrustProblem(const QString& path);

} // namespace qor
