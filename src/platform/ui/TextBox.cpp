#include "platform/ui/TextBox.h"

namespace qor {

TextBox::TextBox(QWidget* parent) : QLineEdit(parent)
{
    connect(this, &QLineEdit::textChanged, this, &TextBox::Change);
}

} // namespace qor
