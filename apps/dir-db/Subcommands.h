// What dir-db can be asked for.
#pragma once

#include "CommandLine.h"

namespace qor {

/// In the order of the help.
std::span<const Subcommand> Subcommands();

} // namespace qor
