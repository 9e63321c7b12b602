#include "JetValues.h"

#include "platform/runtime/RuntimeError.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <mdbtools.h>
#include <QDateTime>
#include <QtEndian>

namespace qor {

namespace {

template <typename Integer>
QString NumberText(QByteArrayView bytes)
{
    return QString::number(qFromLittleEndian<Integer>(bytes.data()));
}

QString DateText(QByteArrayView bytes)
{
    return JetDateText(std::bit_cast<double>(qFromLittleEndian<quint64>(bytes.data())));
}

char16_t WideCharacter(QByteArrayView bytes, qsizetype at)
{
    if (at + 2 > bytes.size())
        ThrowInvalidFile(u"it is damaged; a text ends in half a character"_s);
    return qFromLittleEndian<char16_t>(bytes.data() + at);
}

constexpr std::array types{
    JetType{MDB_BOOL, 0, true, nullptr},           JetType{MDB_BYTE, 1, true, NumberText<quint8>},
    JetType{MDB_INT, 2, true, NumberText<qint16>}, JetType{MDB_LONGINT, 4, true, NumberText<qint32>},
    JetType{MDB_DATETIME, 8, false, DateText},     JetType{MDB_TEXT, 0, false, JetText},
    JetType{MDB_MEMO, 0, false, JetText},
};

} // namespace

void ThrowInvalidFile(const QString& why)
{
    throw RuntimeError(ErrorNumber::InvalidFileFormat, why);
}

const JetType* FindJetType(int id)
{
    const auto* const type = std::ranges::find(types, id, &JetType::id);
    return type == types.end() ? nullptr : type;
}

QString JetDateText(double days)
{
    constexpr double highestDays = 4'000'000; // beyond the year 9999
    constexpr qint64 secondsOfDay = 86'400;
    if (!(std::abs(days) < highestDays))
        ThrowInvalidFile(u"it is damaged; a date is out of range"_s);
    // Before the zero day, too, the fraction counts from midnight onwards.
    const double wholeDays = std::trunc(days);
    const qint64 seconds = std::llround(std::abs(days - wholeDays) * secondsOfDay);
    const QDate date = QDate(1899, 12, 30).addDays(static_cast<qint64>(wholeDays) + seconds / secondsOfDay);
    if (date.year() < 100 || date.year() > 9999)
        ThrowInvalidFile(u"it is damaged; a date is out of range"_s);
    const QTime time = QTime::fromMSecsSinceStartOfDay(static_cast<int>(seconds % secondsOfDay) * 1000);
    return date.toString(Qt::ISODate) + u' ' + time.toString(Qt::ISODate);
}

QString JetText(QByteArrayView bytes)
{
    QString text(u""_s);
    bool wide = !bytes.startsWith("\xff\xfe");
    const bool packed = !wide;
    for (qsizetype at = packed ? 2 : 0; at < bytes.size();) {
        if (packed && bytes[at] == '\0') {
            wide = !wide;
            ++at;
        } else if (wide) {
            text += QChar(WideCharacter(bytes, at));
            at += 2;
        } else {
            text += QLatin1Char(bytes[at++]);
        }
    }
    return text;
}

} // namespace qor
