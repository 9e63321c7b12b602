#include "platform/ui/CommandButton.h"

#include <QShortcutEvent>

namespace qor {

bool CommandButton::event(QEvent* event)
{
    const auto* shortcut = dynamic_cast<QShortcutEvent*>(event);
    if (!shortcut || shortcut->isAmbiguous())
        return QPushButton::event(event);
    click();
    return true;
}

} // namespace qor
