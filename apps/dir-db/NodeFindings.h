// Looks at the nodes and partitions of a database: what the editor does with them when it opens and saves a directory.
#pragma once

#include "Findings.h"

namespace qor {

class Connection;

Findings FindInNodes(Connection& connection);

} // namespace qor
