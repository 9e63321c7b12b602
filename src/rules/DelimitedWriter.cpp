#include "rules/DelimitedWriter.h"

#include "platform/runtime/Text.h"

#include <algorithm>

namespace qor {

namespace {

bool NeedsQuotes(const QString& field, QChar separator)
{
    return field.trimmed() != field || field.startsWith(QChar::ByteOrderMark) ||
           std::ranges::any_of(field, [separator](QChar c) { return c == separator || c == u'"' || c < u' '; });
}

} // namespace

QString DelimitedLine(const QStringList& fields, Quoting quoting, QChar separator)
{
    QStringList written;
    for (QString field : fields) {
        const bool quoted = quoting == Quoting::Always || NeedsQuotes(field, separator);
        written << (quoted ? u'"' + field.replace(u'"', u"\"\""_s) + u'"' : field);
    }
    return written.join(separator);
}

} // namespace qor
