#include "platform/ui/Display.h"

#include <array>
#include <QFileInfo>
#include <QLibraryInfo>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace qor {

using namespace Qt::StringLiterals;

namespace {

bool HasPlugin(const QString& platform)
{
    return QFileInfo::exists(QLibraryInfo::path(QLibraryInfo::PluginsPath) + u"/platforms/libq"_s + platform +
                             u".so"_s);
}

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

/// Platforms that draw off screen and need no display.
constexpr std::array offscreenPlatforms{"offscreen", "minimal", "vnc"};

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
    mXConnection = connect(nullptr, nullptr);
    return hasError(mXConnection) == 0;
}

std::optional<QString> Display::NamedPlatformProblem(const QString& platform)
{
    const QString plugin = platform == u"wayland"_s ? u"wayland-generic"_s : platform;
    if (!HasPlugin(plugin))
        return u"QT_QPA_PLATFORM names \"%1\", which is not installed"_s.arg(platform);
    for (const char* name : offscreenPlatforms) {
        if (platform == QLatin1String(name))
            return std::nullopt;
    }
    if (platform == u"xcb"_s)
        return CanConnectX() ? std::nullopt : std::optional(u"the X display cannot be reached; check DISPLAY"_s);
    if (platform == u"wayland"_s) {
        return CanConnectWayland() ? std::nullopt
                                   : std::optional(u"the Wayland display cannot be reached; check WAYLAND_DISPLAY"_s);
    }
    return u"QT_QPA_PLATFORM names \"%1\"; use xcb, wayland or offscreen"_s.arg(platform);
}

std::optional<QString> Display::FindProblem()
{
    const QString named = qEnvironmentVariable("QT_QPA_PLATFORM").section(u';', 0, 0).section(u':', 0, 0);
    if (!named.isEmpty())
        return NamedPlatformProblem(named);
    const bool xWorks = HasPlugin(u"xcb"_s) && CanConnectX();
    const bool waylandWorks = HasPlugin(u"wayland-generic"_s) && CanConnectWayland();
    if (xWorks || waylandWorks)
        return std::nullopt;
    return u"there is no usable display; set DISPLAY or WAYLAND_DISPLAY"_s;
}

} // namespace qor
