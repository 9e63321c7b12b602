// Keeps signals out of a stretch of work.
#pragma once

#include <csignal>
#include <QtGlobal>

namespace qor {

/// While it lives, signals that would end the program wait.
class SignalsHeld
{
public:
    SignalsHeld()
    {
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_BLOCK, &all, &mBefore);
    }
    ~SignalsHeld() { sigprocmask(SIG_SETMASK, &mBefore, nullptr); }
    Q_DISABLE_COPY_MOVE(SignalsHeld)

private:
    sigset_t mBefore = {};
};

} // namespace qor
