// A text box. Change comes whenever the text changes, by typing or by code; only Fill does not raise it. The maximum
// length also cuts what code assigns, and never leaves half a character. A letter with Alt is for the buttons and is
// not typed. A text that does not fit can be read in the tool tip.
#pragma once

#include <QLineEdit>

namespace qor {

class TextBox : public QLineEdit
{
    Q_OBJECT
public:
    explicit TextBox(QWidget* parent = nullptr);

    /// Sets the text as a loader does, without Change.
    void Fill(const QString& text);
    /// The room for a text that is seen whole, with the caret after it.
    int TextWidth() const;

Q_SIGNALS:
    void Change();
    /// The focus came from, or went to, another control; leaving and entering the window does not count.
    void GotFocus();
    void LostFocus();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool IsCut() const;
};

} // namespace qor
