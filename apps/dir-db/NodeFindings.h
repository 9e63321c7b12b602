// Looks at the nodes and partitions of a database for what the editor does not show, cuts or refuses.
#pragma once

#include "Findings.h"

namespace qor {

class Connection;

Findings FindInNodes(Connection& connection);

} // namespace qor
