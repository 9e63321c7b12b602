// The line at the lower edge of the directory list in which a text is looked for: a field, and which of how many rows
// with the text is chosen. Enter, Shift+Enter and Escape in it do not reach the form's buttons.
#pragma once

#include <QFrame>

class QLabel;

namespace qor {

class TextBox;

class FindLine : public QFrame
{
    Q_OBJECT
public:
    explicit FindLine(QWidget* parent = nullptr);

    QString Text() const;
    /// Puts the focus into the field and marks its text.
    void Edit();
    /// "3 of 12"
    void ShowCount(int position, int count);

Q_SIGNALS:
    void TextChanged();
    void Next();     ///< Enter
    void Previous(); ///< Shift+Enter
    void Closed();   ///< Escape

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    TextBox* txtFind;
    QLabel* lblFindCount;
};

} // namespace qor
