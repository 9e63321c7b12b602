#include "platform/runtime/Numbers.h"

#include "platform/runtime/RuntimeError.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <QLocale>

namespace qor {

namespace {

qsizetype SkipDigits(QStringView text, qsizetype at)
{
    while (at < text.size() && IsDigit(text[at]))
        ++at;
    return at;
}

qsizetype SkipSign(QStringView text, qsizetype at)
{
    return at < text.size() && (text[at] == u'+' || text[at] == u'-') ? at + 1 : at;
}

/// [sign] digits [. digits] [e [sign] digits], with a digit before or after the point.
bool HasNumberForm(QStringView text)
{
    const qsizetype start = SkipSign(text, 0);
    qsizetype at = SkipDigits(text, start);
    qsizetype digits = at - start;
    if (at < text.size() && text[at] == u'.') {
        const qsizetype end = SkipDigits(text, at + 1);
        digits += end - at - 1;
        at = end;
    }
    if (digits == 0)
        return false;
    if (at < text.size() && text[at].toLower() == u'e') {
        const qsizetype exponent = SkipSign(text, at + 1);
        at = SkipDigits(text, exponent);
        if (at == exponent)
            return false;
    }
    return at == text.size();
}

template <typename Number, typename Stored>
bool Fits(Stored number)
{
    return number >= std::numeric_limits<Number>::min() && number <= std::numeric_limits<Number>::max();
}

template <typename Number>
std::optional<Number> WholeOf(const QVariant& value)
{
    if (value.typeId() == QMetaType::LongLong) { // how the engine keeps them, so worth a shortcut
        const qlonglong integer = *static_cast<const qlonglong*>(value.constData());
        return Fits<Number>(integer) ? std::optional(static_cast<Number>(integer)) : std::nullopt;
    }
    const auto number = NumberFromText(value.toString());
    if (!number || !Fits<Number>(*number) || *number != std::trunc(*number))
        return std::nullopt;
    return static_cast<Number>(*number);
}

} // namespace

std::optional<double> NumberFromText(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    if (!HasNumberForm(trimmed))
        return std::nullopt;
    constexpr qsizetype exactDigits = 15;
    if (trimmed.size() <= exactDigits && SkipDigits(trimmed, 0) == trimmed.size()) // worth one, too
        return std::accumulate(trimmed.begin(), trimmed.end(), 0.0,
                               [](double number, QChar digit) { return number * 10 + (digit.unicode() - u'0'); });
    bool ok = false;
    const double value = QLocale::c().toDouble(trimmed, &ok);
    return ok && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<int> WholeNumber(const QVariant& value)
{
    return WholeOf<int>(value);
}

std::optional<qint16> WholeNumber16(const QVariant& value)
{
    return WholeOf<qint16>(value);
}

std::optional<qint16> Int16FromField(const QVariant& value, const QString& field)
{
    if (value.isNull())
        return std::nullopt;
    const auto number = NumberFromText(value.toString());
    if (!number) {
        throw RuntimeError(ErrorNumber::TypeMismatch,
                           u"%1 is \"%2\", which is not a number."_s.arg(field, value.toString().left(40)));
    }
    if (!Fits<qint16>(*number)) {
        using Limits = std::numeric_limits<qint16>;
        throw RuntimeError(ErrorNumber::Overflow,
                           u"%1 is %2; it must lie from %3 to %4."_s.arg(field, value.toString().left(40))
                               .arg(Limits::min())
                               .arg(Limits::max()));
    }
    return WholeNumber16(value);
}

std::optional<int> LeadingNumber(QStringView text)
{
    constexpr int highest = std::numeric_limits<qint16>::max();
    const qsizetype end = SkipDigits(text, 0);
    if (end == 0)
        return std::nullopt;
    bool fits = false;
    const int number = text.first(end).toInt(&fits);
    return fits ? std::min(number, highest) : highest;
}

QString ZeroPaddedNumber(double value)
{
    const QString digits = QString::number(std::abs(value), 'f', 3).rightJustified(19, u'0');
    return value < 0 ? u'-' + digits : digits;
}

} // namespace qor
