#include "platform/ui/PendingInput.h"

#include <algorithm>
#include <array>
#include <QApplication>
#include <QWidget>
#include <QWindow>

namespace qor {

namespace {

constexpr std::array inputEvents{
    QEvent::MouseButtonPress,
    QEvent::MouseButtonRelease,
    QEvent::MouseButtonDblClick,
    QEvent::KeyPress,
    QEvent::KeyRelease,
    QEvent::ShortcutOverride,
    QEvent::Shortcut,
    QEvent::Wheel,
    QEvent::ContextMenu,
    QEvent::InputMethod,
    QEvent::TouchBegin,
    QEvent::TouchUpdate,
    QEvent::TouchEnd,
    QEvent::Drop,
    QEvent::Close,
};

/// Eats the input for one window while it is installed on the application.
class InputSink : public QObject
{
public:
    explicit InputSink(QWidget& window) : mWindow(window) { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const bool isInput = std::ranges::find(inputEvents, event->type()) != inputEvents.end();
        if (!isInput || !BelongsToWindow(watched))
            return false;
        event->ignore(); // a close request that is not accepted leaves the window open
        return true;
    }

private:
    bool BelongsToWindow(const QObject* object) const
    {
        if (const auto* widget = qobject_cast<const QWidget*>(object))
            return widget->window() == &mWindow;
        return object == mWindow.windowHandle();
    }

    QWidget& mWindow;
};

} // namespace

void DropPendingInput(QWidget& window)
{
    const InputSink sink(window);
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers | QEventLoop::X11ExcludeTimers);
}

} // namespace qor
