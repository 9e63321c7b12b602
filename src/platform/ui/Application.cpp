#include "platform/ui/Application.h"

#include "platform/runtime/StandardError.h"
#include "platform/ui/Display.h"

#include <clocale>
#include <csignal>
#include <QApplication>
#include <QEventLoop>
#include <QThread>
#include <string>
#include <vector>

namespace qor {

namespace {

/// Puts the locale and the signal handlers back that the toolkit changes while its application object starts.
class HostStateGuard
{
public:
    HostStateGuard() : mLocale(std::setlocale(LC_ALL, nullptr))
    {
        for (int signal = 1; signal < NSIG; ++signal) {
            struct sigaction action = {};
            if (sigaction(signal, nullptr, &action) == 0)
                mActions.push_back({signal, action});
        }
    }
    ~HostStateGuard()
    {
        std::setlocale(LC_ALL, mLocale.c_str());
        for (const auto& [signal, action] : mActions) {
            if (signal != SIGKILL && signal != SIGSTOP)
                sigaction(signal, &action, nullptr);
        }
    }
    HostStateGuard(const HostStateGuard&) = delete;
    HostStateGuard& operator=(const HostStateGuard&) = delete;

private:
    struct SignalAction
    {
        int signal;
        struct sigaction action;
    };

    std::string mLocale;
    std::vector<SignalAction> mActions;
};

/// A host that has called exit() without ever running its loop leaves every later loop to end at once.
bool CanRunEventLoop()
{
    constexpr int ran = 1;
    QEventLoop loop;
    QMetaObject::invokeMethod(
        &loop, [&loop] { loop.exit(ran); }, Qt::QueuedConnection);
    return loop.exec(QEventLoop::ExcludeUserInputEvents) == ran;
}

void MakeApplication()
{
    const HostStateGuard hostState;
    const BrokenPipeGuard brokenPipe; // the toolkit warns on standard error while it starts
    // The toolkit keeps references to both for the life of the application.
    static int argumentCount = 1;
    static char name[] = "QOR_DIR_Node";
    static char* arguments[] = {name, nullptr};
    static auto* const application = new QApplication(argumentCount, arguments);
    Q_UNUSED(application);
}

} // namespace

std::optional<QString> EnsureApplication()
{
    const QCoreApplication* application = QCoreApplication::instance();
    if (!application) {
        const Display display;
        if (display.Problem())
            return display.Problem();
        MakeApplication();
        return std::nullopt;
    }
    if (!application->inherits("QApplication"))
        return u"the host's application object cannot show windows; it must be a QApplication"_s;
    if (application->thread() != QThread::currentThread())
        return u"the call must come on the thread of the application object"_s;
    if (!CanRunEventLoop())
        return u"the host has ended its event loop"_s;
    return DescriptorProblem();
}

} // namespace qor
