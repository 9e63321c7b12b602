#include "platform/data/AnswerWatch.h"

#include "platform/runtime/SignalsHeld.h"

#include <sys/socket.h>

namespace qor {

namespace {

using namespace std::chrono_literals;

constexpr auto betweenLooks = 1s;

} // namespace

AnswerWatch::AnswerWatch(int socket, std::chrono::seconds limit) : mSocket(socket), mLimit(limit)
{
    const SignalsHeld held; // those of the host are not for the thread
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
