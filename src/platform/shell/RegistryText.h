// Reads the text of a registry file (the .reg export format). Such a file may hold anything: a line that makes no sense
// is skipped, and the rest is read.
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

/// A value as a query returns it. Texts are UTF-8 with their terminating zeros.
struct RegistryValue
{
    quint32 type = 0; ///< a RegistryType, or whatever other number the file gives
    QByteArray data;
};

/// A line of the file with its continuation lines, and what was read from it.
struct RegistryLine
{
    enum class Kind { Remark, Key, Value, Noise }; ///< a remark may be blank

    QString raw; ///< as it stands in the file, line ends included
    Kind kind = Kind::Remark;
    QString key;                        ///< which the line opens or belongs to, in lower case; empty for none
    QString name;                       ///< of a value, in lower case; empty for the key's default value
    std::optional<RegistryValue> value; ///< nothing when its data make no sense
};

/// "KEY\PATH" -> value name -> value; both in lower case, since case makes no difference. The default value has an
/// empty name.
using RegistryValues = QHash<QString, QHash<QString, RegistryValue>>;

/// The encoding of a file: what its byte order mark says (version 5 of the format is written as UTF-16), else UTF-8, or
/// Latin-1 when the bytes are not valid UTF-8.
QStringConverter::Encoding RegistryEncoding(const QByteArray& bytes);
QString DecodeRegistryText(const QByteArray& bytes);

/// All lines of the text; their raw texts in a row are the text.
QList<RegistryLine> RegistryLines(const QString& text);

RegistryValues ParseRegistryText(const QString& text);

} // namespace qor
