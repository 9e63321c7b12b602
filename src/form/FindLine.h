// The find line at the lower edge of the directory list: a field for the text, and which of how many matching rows is
// chosen. Enter, Shift+Enter and Escape in it do not reach the form's buttons.
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
    /// Puts the focus into the field and selects its text.
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
