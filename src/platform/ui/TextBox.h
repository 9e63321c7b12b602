// A text box: Change on every change of its text, by typing or by code, and not when the text stays the same.
// Its maximum length cuts what code assigns, too.
#pragma once

#include <QLineEdit>

namespace qor {

class TextBox : public QLineEdit
{
    Q_OBJECT
public:
    explicit TextBox(QWidget* parent = nullptr);

Q_SIGNALS:
    void Change();
};

} // namespace qor
