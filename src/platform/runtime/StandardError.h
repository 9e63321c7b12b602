// Messages for whoever looks after the host, not for the administrator.
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
/// The same, once per process and topic.
void TellOnce(const QString& topic, const QString& sentence);

} // namespace qor
