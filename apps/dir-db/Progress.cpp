#include "Progress.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <string_view>
#include <sys/time.h>
#include <unistd.h>

namespace qor {

namespace {

// Most of the work is one long call of the engine, so the line is written by the handler of a timer's signal. These are
// what it may use.
std::atomic<const char*> current{nullptr};
std::atomic<int> seconds{0};
static_assert(decltype(current)::is_always_lock_free && decltype(seconds)::is_always_lock_free);

constexpr std::size_t width = 60;
using Line = std::array<char, width + 2>; ///< begins and ends with a carriage return

/// Writes the text and the count, and blanks up to the end of the line.
void Write(std::string_view text, std::string_view count)
{
    Line line{};
    line.fill(' ');
    line.front() = line.back() = '\r';
    auto* place = std::ranges::copy(text.substr(0, width - count.size()), line.begin() + 1).out;
    std::ranges::copy(count, place);
    [[maybe_unused]] const auto written = write(STDERR_FILENO, line.data(), line.size());
}

bool IsInForeground()
{
    return tcgetpgrp(STDERR_FILENO) == getpgrp(); // which fails without a terminal
}

extern "C" void ShowProgress(int)
{
    const int error = errno;
    std::array<char, 16> count{' ', '('};
    auto* const end = std::to_chars(count.data() + 2, count.data() + 12, ++seconds).ptr;
    const auto* const stop = std::ranges::copy(std::string_view(" s)"), end).out;
    const char* const text = current;
    if (text != nullptr && IsInForeground())
        Write(text, std::string_view(count.data(), stop));
    errno = error;
}

void SetTimer(int interval)
{
    const itimerval timer{.it_interval = {.tv_sec = interval, .tv_usec = 0},
                          .it_value = {.tv_sec = interval, .tv_usec = 0}};
    setitimer(ITIMER_REAL, &timer, nullptr);
}

} // namespace

Progress::Progress(const char* what) : mBefore(current)
{
    current = what;
    if (mBefore != nullptr || isatty(STDERR_FILENO) == 0)
        return;
    seconds = 0;
    struct sigaction action = {};
    action.sa_handler = ShowProgress;
    action.sa_flags = SA_RESTART;
    sigaction(SIGALRM, &action, nullptr);
    SetTimer(1);
}

Progress::~Progress()
{
    current = mBefore;
    if (mBefore != nullptr)
        return;
    SetTimer(0);
    if (seconds > 0 && IsInForeground())
        Write({}, {});
    seconds = 0;
}

} // namespace qor
