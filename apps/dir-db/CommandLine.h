// Reads the command line: finds the subcommand, prints help, and says what is wrong.
#pragma once

#include "Arguments.h"

#include <span>

namespace qor {

/// Exit codes.
inline constexpr int success = 0;
inline constexpr int failure = 1;
inline constexpr int wrongUsage = 2;
inline constexpr int withWarnings = 3;

/// What a subcommand does once its command line has been read; returns the exit code. Raises RuntimeError when it
/// fails.
using Work = std::function<int()>;

struct Subcommand
{
    const char* name;
    const char* purpose;
    Work (*setUp)(Arguments& arguments);
};

/// Runs what the command line asks for and returns the exit code. Help goes to standard output, and what is wrong with
/// the command line to standard error. Raises RuntimeError when the work fails.
int RunCommandLine(std::span<const Subcommand> subcommands, int argc, const char* const* argv);

} // namespace qor
