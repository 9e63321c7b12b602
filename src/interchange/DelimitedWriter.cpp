#include "interchange/DelimitedWriter.h"

#include "platform/runtime/RuntimeError.h"

#include <QIODevice>

namespace qor {

void WriteDelimited(QIODevice& device, const QStringList& fields)
{
    QStringList quoted;
    for (QString field : fields)
        quoted << u'"' + field.replace(u'"', u"\"\""_s) + u'"';
    const QByteArray line = (quoted.join(u',') + u"\r\n"_s).toUtf8();
    if (device.write(line) != line.size())
        throw RuntimeError(ErrorNumber::Provider, device.errorString());
}

} // namespace qor
