#include "editor/FieldFilter.h"

#include "platform/ui/ComboBox.h"
#include "platform/ui/TextBox.h"
#include "rules/Validation.h"

#include <algorithm>

namespace qor {

namespace {

QString Admitted(QStringView text, bool (*admits)(QChar))
{
    QString admitted;
    std::copy_if(text.begin(), text.end(), std::back_inserter(admitted), admits);
    return admitted;
}

} // namespace

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

int WalkTypedNumber(const ComboBox& combo)
{
    const int low = combo.List(0).toInt();
    const int high = combo.List(combo.ListCount() - 1).toInt();
    int number = 0;
    for (const QChar digit : combo.Text()) {
        if (!IsDigit(digit))
            break;
        const int next = number * 10 + (digit.unicode() - u'0');
        if (next < low || next > high)
            break;
        number = next;
    }
    return number;
}

} // namespace qor
