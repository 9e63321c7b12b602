// Reads the text of a registry file (the .reg export format). Anything can stand in such a file: a line that
// makes no sense is passed over, and everything else is read.
#pragma once

#include "platform/runtime/Text.h"

#include <optional>
#include <QByteArray>
#include <QHash>
#include <QStringConverter>

namespace qor {

enum class RegistryType : quint32 {
    String = 1,
    ExpandString = 2,
    Binary = 3,
    DWord = 4,
    MultiString = 7,
};

/// A value as a query answers it. Texts are 8-bit text (UTF-8) with their terminating zeros.
struct RegistryValue
{
    quint32 type = 0; ///< a RegistryType, or another number as the file has it
    QByteArray data;
};

/// A line of the file, together with those that continue it, and what is read of it.
struct RegistryLine
{
    enum class Kind { Remark, Key, Value, Noise }; ///< a remark may be blank

    QString raw; ///< as it stands in the file, line ends included
    Kind kind = Kind::Remark;
    QString key;                        ///< that the line opens or stands under, in lower case; empty for none
    QString name;                       ///< of a value, in lower case; empty for the key's default value
    std::optional<RegistryValue> value; ///< nothing where its data make no sense
};

/// "KEY\PATH" -> value name -> value; both in lower case, since neither regards case. The default value has
/// an empty name.
using RegistryValues = QHash<QString, QHash<QString, RegistryValue>>;

/// How a file's bytes stand for its text: UTF-16 with its mark (as the format's version 5 is written), else UTF-8 and,
/// where they are not valid UTF-8, Latin-1.
QStringConverter::Encoding RegistryEncoding(const QByteArray& bytes);
QString DecodeRegistryText(const QByteArray& bytes);

/// All lines of the text; their raw texts together are the text.
QList<RegistryLine> RegistryLines(const QString& text);

RegistryValues ParseRegistryText(const QString& text);

} // namespace qor
