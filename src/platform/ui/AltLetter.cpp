#include "platform/ui/AltLetter.h"

#include <QKeyEvent>

namespace qor {

bool IsAltLetter(const QKeyEvent& event)
{
    constexpr Qt::KeyboardModifiers other = Qt::ControlModifier | Qt::GroupSwitchModifier;
    return event.modifiers().testFlag(Qt::AltModifier) && !event.modifiers().testAnyFlags(other) &&
           !event.text().isEmpty() && event.text().front().isPrint();
}

} // namespace qor
