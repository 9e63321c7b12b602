// A stretch of work that no signal comes into.
#pragma once

#include <csignal>
#include <QtGlobal>

namespace qor {

/// A signal that would end the program waits while this lives.
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
