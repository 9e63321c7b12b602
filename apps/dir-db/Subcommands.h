// The subcommands of dir-db and the reading of its command line.
#pragma once

#include <QStringList>

namespace qor {

/// Runs what the arguments (without the program's name) ask for and returns the program's exit code. Raises
/// RuntimeError when the work fails.
int RunCommandLine(const QStringList& arguments);

/// Exit codes.
inline constexpr int success = 0;
inline constexpr int failure = 1;
inline constexpr int wrongUsage = 2;
inline constexpr int withWarnings = 3;

} // namespace qor
