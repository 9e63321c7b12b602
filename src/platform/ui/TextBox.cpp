#include "platform/ui/TextBox.h"

#include "platform/ui/AltLetter.h"

#include <QKeyEvent>
#include <QSignalBlocker>
#include <QValidator>

namespace qor {

namespace {

bool IsBetweenControls(const QFocusEvent& event)
{
    return event.reason() != Qt::ActiveWindowFocusReason && event.reason() != Qt::PopupFocusReason;
}

bool IsHalfCharacter(const QString& text, qsizetype at)
{
    const bool followed = at + 1 < text.size() && text[at + 1].isLowSurrogate();
    const bool preceded = at > 0 && text[at - 1].isHighSurrogate();
    return (text[at].isHighSurrogate() && !followed) || (text[at].isLowSurrogate() && !preceded);
}

/// Admits every text and takes out the half characters that the maximum length leaves.
class WholeCharacters : public QValidator
{
public:
    using QValidator::QValidator;

    State validate(QString& text, int& caret) const override
    {
        for (qsizetype at = text.size() - 1; at >= 0; --at) {
            if (!IsHalfCharacter(text, at))
                continue;
            text.remove(at, 1);
            caret -= at < caret ? 1 : 0;
        }
        return Acceptable;
    }
};

} // namespace

TextBox::TextBox(QWidget* parent) : QLineEdit(parent)
{
    setValidator(new WholeCharacters(this));
    connect(this, &QLineEdit::textChanged, this, &TextBox::Change);
}

void TextBox::Fill(const QString& text)
{
    const QSignalBlocker quiet(this);
    setText(text);
}

void TextBox::keyPressEvent(QKeyEvent* event)
{
    if (IsAltLetter(*event))
        event->ignore();
    else
        QLineEdit::keyPressEvent(event);
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
