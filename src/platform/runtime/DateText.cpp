#include "platform/runtime/DateText.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

namespace qor {

namespace {

/// The short time format, which most regions give without seconds.
QString TimeFormatWithSeconds(const QLocale& locale)
{
    QString format = locale.timeFormat(QLocale::ShortFormat);
    if (!format.contains(u's'))
        format.replace(QRegularExpression(u"(\\W?)mm"_s), u"\\1mm\\1ss"_s);
    return format;
}

} // namespace

QString GeneralDateText(const QDateTime& moment)
{
    const QLocale locale = QLocale::system();
    return ShortDateText(moment.date()) + u' ' + locale.toString(moment.time(), TimeFormatWithSeconds(locale));
}

QString ShortDateText(const QDate& date)
{
    return QLocale::system().toString(date, QLocale::ShortFormat);
}

} // namespace qor
