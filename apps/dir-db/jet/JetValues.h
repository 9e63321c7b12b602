// Values as a Jet database stores them, turned into texts.
#pragma once

#include "platform/runtime/Text.h"

#include <QByteArrayView>

namespace qor {

/// One type of column.
struct JetType
{
    int id;          ///< in the file
    qsizetype width; ///< in bytes; 0 for a type without a fixed one
    bool isNumber;
    /// Null for booleans, which are not in the bytes. Raises RuntimeError for bytes that are not a value.
    QString (*text)(QByteArrayView bytes);
};

/// Raises RuntimeError for a file that is not as it should be, with the reason alone ("it is damaged; ...").
[[noreturn]] void ThrowInvalidFile(const QString& why);

/// Null for a type that cannot be taken.
const JetType* FindJetType(int id);

/// "yyyy-MM-dd HH:mm:ss" for a number of days since the end of 1899.
QString JetDateText(double days);
/// A text in UTF-16, or packed: after the mark FF FE one byte for each character of Latin-1, with a zero byte between
/// stretches that are packed and stretches that are not.
QString JetText(QByteArrayView bytes);

} // namespace qor
