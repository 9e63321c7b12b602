#include "platform/ui/TextBox.h"

#include <QFocusEvent>

namespace qor {

namespace {

bool IsBetweenControls(const QFocusEvent& event)
{
    return event.reason() != Qt::ActiveWindowFocusReason && event.reason() != Qt::PopupFocusReason;
}

} // namespace

TextBox::TextBox(QWidget* parent) : QLineEdit(parent)
{
    connect(this, &QLineEdit::textChanged, this, &TextBox::Change);
}

void TextBox::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    if (IsBetweenControls(*event))
        Q_EMIT GotFocus();
}

void TextBox::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    if (IsBetweenControls(*event))
        Q_EMIT LostFocus();
}

} // namespace qor
