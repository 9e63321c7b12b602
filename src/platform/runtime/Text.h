// Texts. u"..."_s is a QString without allocation.
#pragma once

#include <QString>

namespace qor {

using namespace Qt::StringLiterals;

/// At most this many UTF-16 units from the start of a text, without half of a character that takes two.
inline QString CutAtCharacter(const QString& text, qsizetype units)
{
    const bool splits = units > 0 && units < text.size() && text[units - 1].isHighSurrogate();
    return text.left(splits ? units - 1 : units);
}

} // namespace qor
