#include "platform/ui/CommandButton.h"

#include <QShortcutEvent>

namespace qor {

bool CommandButton::event(QEvent* event)
{
    if (event->type() != QEvent::Shortcut || static_cast<QShortcutEvent*>(event)->isAmbiguous())
        return QPushButton::event(event);
    click();
    return true;
}

} // namespace qor
