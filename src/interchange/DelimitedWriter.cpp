#include "interchange/DelimitedWriter.h"

#include "platform/runtime/Text.h"

#include <QIODevice>

namespace qor {

bool WriteDelimited(QIODevice& device, const QStringList& fields)
{
    QStringList quoted;
    for (QString field : fields)
        quoted << u'"' + field.replace(u'"', u"\"\""_s) + u'"';
    const QByteArray line = (quoted.join(u',') + u"\r\n"_s).toUtf8();
    return device.write(line) == line.size();
}

} // namespace qor
