// Keeps signals out of a stretch of work.
#pragma once

#include <csignal>
#include <QtGlobal>

namespace qor {

/// While it lives, signals that would end the program wait, or go to other threads. A thread or process that is started
/// meanwhile keeps them out for good.
class SignalsHeld
{
public:
    SignalsHeld()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, &mBefore);
    }
    ~SignalsHeld() { pthread_sigmask(SIG_SETMASK, &mBefore, nullptr); }
    Q_DISABLE_COPY_MOVE(SignalsHeld)

private:
    sigset_t mBefore = {};
};

} // namespace qor
