#include "platform/runtime/StandardError.h"

#include <cstdio>
#include <QMutex>
#include <QSet>

namespace qor {

namespace {

sigset_t BrokenPipe()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    return signals;
}

bool IsPending()
{
    sigset_t pending;
    sigpending(&pending);
    return sigismember(&pending, SIGPIPE) == 1;
}

} // namespace

BrokenPipeGuard::BrokenPipeGuard() : mWasPending(IsPending())
{
    const sigset_t signals = BrokenPipe();
    pthread_sigmask(SIG_BLOCK, &signals, &mBefore);
}

BrokenPipeGuard::~BrokenPipeGuard()
{
    const sigset_t signals = BrokenPipe();
    constexpr timespec now{};
    if (!mWasPending && IsPending())
        sigtimedwait(&signals, nullptr, &now);
    pthread_sigmask(SIG_SETMASK, &mBefore, nullptr);
}

void Tell(const QString& sentence)
{
    const BrokenPipeGuard guard;
    std::fprintf(stderr, "QOR_DIR_NODE: %s\n", qUtf8Printable(sentence));
}

void TellOnce(const QString& topic, const QString& sentence)
{
    static QMutex mutex;
    static QSet<QString> told;
    const QMutexLocker locker(&mutex);
    if (told.contains(topic))
        return;
    told.insert(topic);
    Tell(sentence);
}

} // namespace qor
