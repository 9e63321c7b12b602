// A limit to the time that a server may take for an answer.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace qor {

/// Ends the connection of a server that answers nothing: one that is halted, or that a network without a sign of it cut
/// off. The client library waits for such a server for ever and can be told no limit, so that a thread of our own looks
/// at the clock, the only one of the editor. It touches the socket alone, and takes no signals of the host's.
class AnswerWatch
{
public:
    /// Longer than the server itself lets a statement run.
    static constexpr std::chrono::seconds longestAnswer{35};

    /// socket: belongs to the connection and outlives the watch. limit: to every wait, to within a second.
    explicit AnswerWatch(int socket, std::chrono::seconds limit = longestAnswer);
    ~AnswerWatch() = default;
    AnswerWatch(const AnswerWatch&) = delete;
    AnswerWatch& operator=(const AnswerWatch&) = delete;

    /// A wait for an answer, from its making to its end.
    class Wait
    {
    public:
        explicit Wait(AnswerWatch* watch);
        ~Wait();
        Wait(const Wait&) = delete;
        Wait& operator=(const Wait&) = delete;

    private:
        AnswerWatch* mWatch;
    };

    /// Whether it ended the connection.
    bool HasGivenUp();

private:
    using Clock = std::chrono::steady_clock;

    void Look(const std::stop_token& stop);
    void SetDeadline(std::optional<Clock::time_point> deadline);

    int mSocket;
    std::chrono::seconds mLimit;
    std::mutex mMutex; ///< of what follows
    std::condition_variable_any mStopped;
    std::optional<Clock::time_point> mDeadline;
    bool mHasGivenUp = false;
    std::jthread mThread; ///< the last one, so that it ends before the rest goes
};

} // namespace qor
