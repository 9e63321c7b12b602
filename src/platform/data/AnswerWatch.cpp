#include "platform/data/AnswerWatch.h"

#include <csignal>
#include <sys/socket.h>

namespace qor {

namespace {

using namespace std::chrono_literals;

constexpr auto betweenLooks = 1s;

/// Signals go to other threads while it lives, and to those that are made from this one for good.
class SignalsBlocked
{
public:
    SignalsBlocked()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &mBefore);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &mBefore, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t mBefore{};
};

} // namespace

AnswerWatch::AnswerWatch(int socket, std::chrono::seconds limit) : mSocket(socket), mLimit(limit)
{
    const SignalsBlocked blocked;
    mThread = std::jthread([this](const std::stop_token& stop) { Look(stop); });
}

void AnswerWatch::Look(const std::stop_token& stop)
{
    std::unique_lock lock(mMutex);
    while (!stop.stop_requested()) {
        mStopped.wait_for(lock, stop, betweenLooks, [] { return false; });
        if (!mDeadline || Clock::now() < *mDeadline)
            continue;
        shutdown(mSocket, SHUT_RDWR);
        mHasGivenUp = true;
        mDeadline.reset();
    }
}

void AnswerWatch::SetDeadline(std::optional<Clock::time_point> deadline)
{
    const std::lock_guard lock(mMutex);
    mDeadline = deadline;
}

bool AnswerWatch::HasGivenUp()
{
    const std::lock_guard lock(mMutex);
    return mHasGivenUp;
}

AnswerWatch::Wait::Wait(AnswerWatch* watch) : mWatch(watch)
{
    if (mWatch)
        mWatch->SetDeadline(Clock::now() + mWatch->mLimit);
}

AnswerWatch::Wait::~Wait()
{
    if (mWatch)
        mWatch->SetDeadline({});
}

} // namespace qor
