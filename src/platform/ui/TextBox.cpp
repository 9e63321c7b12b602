#include "platform/ui/TextBox.h"

#include "platform/ui/AltLetter.h"

#include <QHelpEvent>
#include <QSignalBlocker>
#include <QStyleOptionFrame>
#include <QToolTip>
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

/// Admits every text, but removes the half characters that the maximum length leaves.
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

bool TextBox::event(QEvent* event)
{
    const auto* help = event->type() == QEvent::ToolTip ? dynamic_cast<QHelpEvent*>(event) : nullptr;
    if (!help || !IsCut())
        return QLineEdit::event(event);
    const QString plain = Qt::mightBeRichText(text()) ? Qt::convertFromPlainText(text()) : text();
    QToolTip::showText(help->globalPos(), plain, this);
    return true;
}

bool TextBox::IsCut() const
{
    return fontMetrics().horizontalAdvance(text()) > TextWidth();
}

int TextBox::TextWidth() const
{
    constexpr int caretWidth = 1;
    constexpr int ownMargins = 2 * 2; // which the toolkit adds beside the text, whatever the style
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QRect contents = style()->subElementRect(QStyle::SE_LineEditContents, &option, this);
    return (contents - textMargins()).width() - ownMargins - caretWidth;
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
