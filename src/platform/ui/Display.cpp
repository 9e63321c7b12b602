#include "platform/ui/Display.h"

#include "platform/ui/PlatformPlugin.h"

#include <algorithm>
#include <array>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace qor {

using namespace Qt::StringLiterals;

namespace {

QString WaylandSocketPath()
{
    QString display = qEnvironmentVariable("WAYLAND_DISPLAY");
    if (display.isEmpty() || display.startsWith(u'/'))
        return display;
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return folder.isEmpty() ? QString() : folder + u'/' + display;
}

bool CanConnectWayland()
{
    const QByteArray path = WaylandSocketPath().toLocal8Bit();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || static_cast<std::size_t>(path.size()) >= sizeof(address.sun_path))
        return false;
    std::copy(path.begin(), path.end(), address.sun_path);
    const int socketFile = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socketFile < 0)
        return false;
    const bool works = connect(socketFile, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0;
    close(socketFile);
    return works;
}

/// Those that do not end the process when something is missing. The last three draw off screen and need no display.
constexpr std::array<QStringView, 5> knownPlatforms{u"xcb", u"wayland", u"offscreen", u"minimal", u"vnc"};

} // namespace

Display::Display() : mXcb(u"xcb"_s, 1), mProblem(FindProblem()) {}

Display::~Display()
{
    using Disconnect = void (*)(void*);
    if (const auto disconnect = reinterpret_cast<Disconnect>(mXcb.resolve("xcb_disconnect"));
        mXConnection && disconnect)
        disconnect(mXConnection);
}

/// Asks the X client library, which is there whenever the toolkit's own plugin can be loaded.
bool Display::CanConnectX()
{
    using Connect = void* (*)(const char*, int*);
    using HasError = int (*)(void*);
    const auto connect = reinterpret_cast<Connect>(mXcb.resolve("xcb_connect"));
    const auto hasError = reinterpret_cast<HasError>(mXcb.resolve("xcb_connection_has_error"));
    if (!connect || !hasError)
        return false;
    if (!mXConnection)
        mXConnection = connect(nullptr, nullptr);
    return hasError(mXConnection) == 0;
}

std::optional<QString> Display::PlatformProblem(const QString& platform)
{
    if (platform == u"xcb"_s && !CanConnectX())
        return u"the X display cannot be reached; check DISPLAY"_s;
    if (platform == u"wayland"_s && !CanConnectWayland())
        return u"the Wayland display cannot be reached; check WAYLAND_DISPLAY"_s;
    return PlatformPluginProblem(platform);
}

/// The toolkit takes the first of them that works.
std::optional<QString> Display::ProblemOfNamed(const QStringList& platforms)
{
    std::optional<QString> first;
    for (const QString& entry : platforms) {
        const QString platform = entry.section(u':', 0, 0).toLower();
        const auto problem = PlatformProblem(platform);
        if (!problem && std::ranges::count(knownPlatforms, QStringView(platform)) == 0)
            return u"QT_QPA_PLATFORM names \"%1\"; use xcb, wayland or offscreen"_s.arg(platform);
        if (!problem)
            return std::nullopt;
        if (!first)
            first = problem;
    }
    return first;
}

std::optional<QString> Display::ProblemOfDefault()
{
    QStringList reachable;
    if (CanConnectX())
        reachable << u"xcb"_s;
    if (CanConnectWayland())
        reachable << u"wayland"_s;
    if (reachable.isEmpty())
        return u"there is no usable display; set DISPLAY or WAYLAND_DISPLAY"_s;
    return ProblemOfNamed(reachable);
}

std::optional<QString> Display::FindProblem()
{
    if (auto problem = ProcessProblem())
        return problem;
    const QStringList named = qEnvironmentVariable("QT_QPA_PLATFORM").split(u';', Qt::SkipEmptyParts);
    return named.isEmpty() ? ProblemOfDefault() : ProblemOfNamed(named);
}

} // namespace qor
