// The sample: a small configuration worth looking at, the same in every run.
#pragma once

#include "store/DataBase.h"

namespace qor {

/// Fills an empty database with two configurations: directories full, empty, plain and odd, message nodes
/// with gaps, and a partition without a maximum for message nodes.
void WriteSample(DataBase& dataBase);

} // namespace qor
