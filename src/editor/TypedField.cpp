#include "editor/TypedField.h"

#include "platform/ui/ComboBox.h"
#include "platform/ui/TextBox.h"
#include "rules/TypedText.h"

namespace qor {

bool FilterField(TextBox& field, bool (*admits)(QChar))
{
    const QString text = field.text();
    const QString admitted = Admitted(text, admits);
    if (admitted.size() == text.size())
        return !text.isEmpty();
    const qsizetype caret = Admitted(QStringView(text).first(field.cursorPosition()), admits).size();
    field.setText(admitted);
    field.setCursorPosition(static_cast<int>(caret));
    return false;
}

int NumberTypedIn(const ComboBox& combo)
{
    const int low = combo.List(0).toInt();
    const int high = combo.List(combo.ListCount() - 1).toInt();
    return TypedNumber(combo.Text(), low, high);
}

} // namespace qor
