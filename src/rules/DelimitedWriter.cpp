#include "rules/DelimitedWriter.h"

#include "platform/runtime/Text.h"

#include <algorithm>

namespace qor {

namespace {

bool NeedsQuotes(const QString& field)
{
    return field.trimmed() != field || field.startsWith(QChar::ByteOrderMark) ||
           std::any_of(field.begin(), field.end(), [](QChar c) { return c == u',' || c == u'"' || c < u' '; });
}

} // namespace

QString DelimitedLine(const QStringList& fields, Quoting quoting)
{
    QStringList written;
    for (QString field : fields) {
        const bool quoted = quoting == Quoting::Always || NeedsQuotes(field);
        written << (quoted ? u'"' + field.replace(u'"', u"\"\""_s) + u'"' : field);
    }
    return written.join(u',');
}

} // namespace qor
