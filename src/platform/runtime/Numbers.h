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

/// The number that a whole text stands for: blanks around it, a sign, a decimal point and an exponent are
/// accepted ("12", " -3.5 ", ".5", "1e3"). Nothing for anything else, the empty text included.
std::optional<double> NumberFromText(QStringView text);

/// The lenient numeric test.
inline bool IsNumeric(QStringView text)
{
    return NumberFromText(text).has_value();
}

/// The whole number that a stored value stands for, however it is written ("12", "12.0", "1.2e1"); nothing for Null,
/// for other texts, for fractions and for what does not fit.
std::optional<int> WholeNumber(const QVariant& value);
std::optional<qint16> WholeNumber16(const QVariant& value);

/// A field's value as a 16-bit whole number; Null and a fraction are nothing. Raises Overflow or TypeMismatch naming
/// the field.
std::optional<qint16> Int16FromField(const QVariant& value, const QString& field);

/// The number that a text begins with, at most the highest 16-bit number: 12 for "12x"; nothing where it begins with
/// another character.
std::optional<int> LeadingNumber(QStringView text);

/// value in the pattern "000000000000000.000": fifteen integer digits, three decimals, a leading "-" if below
/// 0.
QString ZeroPaddedNumber(double value);

} // namespace qor
