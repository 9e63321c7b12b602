// What is told to whoever looks after the host, and not to the administrator.
#pragma once

#include "platform/runtime/Text.h"

#include <csignal>

namespace qor {

/// Keeps a broken pipe behind standard error from ending the process while it lives, whatever the host has set.
class BrokenPipeGuard
{
public:
    BrokenPipeGuard();
    ~BrokenPipeGuard();
    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;

private:
    sigset_t mBefore{};
    bool mWasPending;
};

/// Prints a sentence on standard error.
void Tell(const QString& sentence);
/// The same, once in a process for each topic.
void TellOnce(const QString& topic, const QString& sentence);

} // namespace qor
