// A text box: Change on every change of its text, by typing or by code, and not when the text stays the same; Fill
// alone raises none. Its maximum length cuts what code assigns, too, and never leaves half a character. A letter with
// Alt is for the buttons and is not typed. A text that does not fit can be read in the tool tip.
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
    /// How wide a text may be and be seen whole, with the caret behind it.
    int TextWidth() const;

Q_SIGNALS:
    void Change();
    /// The focus came from, or went to, another control of the form; not: the window was left or entered
    /// again.
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
