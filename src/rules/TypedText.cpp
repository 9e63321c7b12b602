#include "rules/TypedText.h"

#include "platform/runtime/Numbers.h"

#include <algorithm>
#include <iterator>

namespace qor {

QString Admitted(QStringView text, bool (*admits)(QChar))
{
    QString admitted;
    std::ranges::copy_if(text, std::back_inserter(admitted), admits);
    return admitted;
}

int TypedNumber(QStringView text, int low, int high)
{
    int number = 0;
    for (const QChar digit : text) {
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
