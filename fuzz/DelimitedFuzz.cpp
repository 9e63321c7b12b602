// Any bytes as a file of delimited fields: it is read to its end or to an error, no field grows too long, and what is
// written of the fields is read back the same.
#include "platform/runtime/RuntimeError.h"
#include "rules/DelimitedReader.h"
#include "rules/DelimitedWriter.h"

#include <cstdlib>
#include <QBuffer>

using namespace qor;

namespace {

QStringList FieldsIn(QByteArray bytes)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    DelimitedReader reader(buffer);
    QStringList fields;
    try {
        while (!reader.AtEnd())
            fields << reader.ReadField();
    } catch (const RuntimeError&) { // what came before it counts
    }
    return fields;
}

/// Whether a field can be read back: its UTF-8 may be longer than the bytes that it was read from.
bool IsTooLong(const QString& field)
{
    if (field.size() > DelimitedReader::highestFieldLength)
        std::abort();
    return field.toUtf8().size() > DelimitedReader::highestFieldLength;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QStringList fields = FieldsIn(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    fields.removeIf(IsTooLong);
    for (const Quoting quoting : {Quoting::Always, Quoting::WhereNeeded}) {
        const QByteArray line = fields.isEmpty() ? QByteArray() : DelimitedLine(fields, quoting).toUtf8() + "\r\n";
        if (FieldsIn(line) != fields)
            std::abort();
    }
    return 0;
}
