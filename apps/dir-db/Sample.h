// The sample: a small configuration worth looking at, the same in every run.
#pragma once

#include "platform/data/Connection.h"

namespace qor {

/// Fills an empty database with two configurations: directories full, empty, plain and odd, message nodes
/// with gaps, and a partition without a maximum for message nodes.
void WriteSample(Connection& connection);

} // namespace qor
