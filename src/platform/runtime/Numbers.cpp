#include "platform/runtime/Numbers.h"

#include "platform/runtime/RuntimeError.h"

#include <cmath>
#include <limits>
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

/// [sign] digits [. digits] [e [sign] digits], with a digit before or behind the point.
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

} // namespace

std::optional<double> NumberFromText(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    if (!HasNumberForm(trimmed))
        return std::nullopt;
    bool ok = false;
    const double value = QLocale::c().toDouble(trimmed, &ok);
    return ok && std::isfinite(value) ? std::optional(value) : std::nullopt;
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
    using Limits = std::numeric_limits<qint16>;
    const double rounded = std::nearbyint(*number);
    if (rounded < Limits::min() || rounded > Limits::max()) {
        throw RuntimeError(ErrorNumber::Overflow,
                           u"%1 is %2; it must lie from %3 to %4."_s.arg(field, value.toString().left(40))
                               .arg(Limits::min())
                               .arg(Limits::max()));
    }
    return static_cast<qint16>(rounded);
}

QString ZeroPaddedNumber(double value)
{
    const QString digits = QString::number(std::abs(value), 'f', 3).rightJustified(19, u'0');
    return value < 0 ? u'-' + digits : digits;
}

} // namespace qor
