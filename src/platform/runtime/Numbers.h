// Numbers in texts: the lenient numeric test and the conversions that go with it.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>
#include <QVariant>

namespace qor {

constexpr bool IsDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

/// The number that the whole text spells: surrounding blanks, a sign, a decimal point and an exponent are accepted
/// ("12", " -3.5 ", ".5", "1e3"). Nothing for any other text, the empty one included.
std::optional<double> NumberFromText(QStringView text);

/// The lenient numeric test.
inline bool IsNumeric(QStringView text)
{
    return NumberFromText(text).has_value();
}

/// The whole number that a stored value stands for, however it is written ("12", "12.0", "1.2e1"); nothing for Null,
/// other texts, fractions, and numbers that do not fit.
std::optional<int> WholeNumber(const QVariant& value);
std::optional<qint16> WholeNumber16(const QVariant& value);

/// A field's value as a 16-bit whole number; nothing for Null and fractions. Raises Overflow or TypeMismatch, naming
/// the field.
std::optional<qint16> Int16FromField(const QVariant& value, const QString& field);

/// The number that a text begins with, at most the highest 16-bit number: 12 for "12x"; nothing when it does not begin
/// with a digit.
std::optional<int> LeadingNumber(QStringView text);

/// The value in the pattern "000000000000000.000": fifteen integer digits, three decimals, a leading "-" below 0.
QString ZeroPaddedNumber(double value);

} // namespace qor
