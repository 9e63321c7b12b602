#include "platform/shell/RegistryText.h"

#include <QStringDecoder>
#include <QtEndian>

namespace qor {

namespace {

/// The two versions of the format encode texts that are given as hex differently: as UTF-16 or in 8 bits.
bool HasWideTexts(const QString& text)
{
    return !text.trimmed().startsWith(u"REGEDIT4");
}

/// Whether a line begins something new. A value that was to be continued there is cut off, and dropped.
bool BeginsKeyOrValue(QStringView line)
{
    return line.startsWith(u'[') || line.startsWith(u'"') || line.startsWith(u'@');
}

struct JoinedLine
{
    QString raw;
    QString text; ///< without line ends and surrounding blanks; empty for a value that is cut off
};

/// The lines of the file, with continued ones (a backslash at the end) joined.
QList<JoinedLine> JoinedLines(const QString& text)
{
    QList<JoinedLine> lines;
    bool isContinued = false;
    const QStringView all(text);
    for (const QStringView line : all.split(u'\n')) {
        const QStringView trimmed = line.trimmed();
        if (isContinued && BeginsKeyOrValue(trimmed)) {
            lines.last().text.clear();
            isContinued = false;
        }
        if (!isContinued)
            lines << JoinedLine();
        isContinued = (isContinued || trimmed.contains(u"=hex")) && trimmed.endsWith(u'\\');
        const qsizetype lineEnd = line.end() == all.end() ? 0 : 1;
        lines.last().raw += QStringView(line.data(), line.size() + lineEnd);
        lines.last().text += isContinued ? trimmed.chopped(1) : trimmed;
    }
    if (isContinued)
        lines.last().text.clear();
    return lines;
}

struct QuotedText
{
    QString text;
    qsizetype length; ///< in the line, both quotes included
};

/// The quoted text at the start of the line; a backslash escapes the next character.
std::optional<QuotedText> TakeQuoted(QStringView line)
{
    if (!line.startsWith(u'"'))
        return std::nullopt;
    QString text;
    for (qsizetype at = 1; at < line.size(); ++at) {
        if (line[at] == u'"')
            return QuotedText{text, at + 1};
        if (line[at] == u'\\' && at + 1 < line.size())
            ++at;
        text += line[at];
    }
    return std::nullopt;
}

std::optional<QByteArray> HexBytes(QStringView list)
{
    QByteArray bytes;
    for (const QStringView item : list.split(u',', Qt::SkipEmptyParts)) {
        bool ok = false;
        const uint byte = item.trimmed().toUInt(&ok, 16);
        if (!ok || byte > 0xFF)
            return std::nullopt;
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

bool IsText(quint32 type)
{
    return type == quint32(RegistryType::String) || type == quint32(RegistryType::ExpandString) ||
           type == quint32(RegistryType::MultiString);
}

QByteArray Narrow(const QByteArray& utf16)
{
    QStringDecoder decode(QStringDecoder::Utf16LE);
    return QString(decode(utf16)).toUtf8();
}

std::optional<RegistryValue> ParseHex(QStringView data, bool wideTexts)
{
    const qsizetype colon = data.indexOf(u':');
    if (colon < 0)
        return std::nullopt;
    auto type = quint32(RegistryType::Binary);
    const QStringView kind = data.left(colon);
    if (kind.startsWith(u"hex(") && kind.endsWith(u')')) {
        bool ok = false;
        type = kind.sliced(4).chopped(1).toUInt(&ok, 16);
        if (!ok)
            return std::nullopt;
    } else if (kind != u"hex") {
        return std::nullopt;
    }
    auto bytes = HexBytes(data.sliced(colon + 1));
    if (!bytes)
        return std::nullopt;
    return RegistryValue{type, IsText(type) && wideTexts ? Narrow(*bytes) : *bytes};
}

std::optional<RegistryValue> ParseDWord(QStringView digits)
{
    bool ok = false;
    const quint32 number = digits.trimmed().toUInt(&ok, 16);
    if (!ok)
        return std::nullopt;
    QByteArray data(4, '\0');
    qToLittleEndian(number, data.data());
    return RegistryValue{quint32(RegistryType::DWord), data};
}

std::optional<RegistryValue> ParseData(QStringView data, bool wideTexts)
{
    if (const auto quoted = TakeQuoted(data))
        return RegistryValue{quint32(RegistryType::String), quoted->text.toUtf8() + '\0'};
    if (data.startsWith(u"dword:"))
        return ParseDWord(data.sliced(6));
    return ParseHex(data, wideTexts);
}

/// The path of a key line "[KEY\PATH]"; empty for a deletion "[-KEY\PATH]" and for a line without its closing bracket,
/// so that the values after it do not go to the key before.
QString KeyOf(QStringView line)
{
    if (line.size() < 2 || !line.endsWith(u']'))
        return {};
    const QStringView path = line.sliced(1).chopped(1);
    return path.startsWith(u'-') ? QString() : path.toString().toLower();
}

bool IsRemark(const QString& raw)
{
    const QStringView line = QStringView(raw).trimmed();
    return line.isEmpty() || line.startsWith(u';');
}

/// Reads the line as a value if it has a name and an equals sign.
void ReadValue(RegistryLine& line, QStringView text, bool wideTexts)
{
    const auto name = text.startsWith(u'@') ? QuotedText{{}, 1} : TakeQuoted(text);
    const QStringView rest = name ? text.sliced(name->length).trimmed() : QStringView();
    if (!rest.startsWith(u'='))
        return;
    line.kind = RegistryLine::Kind::Value;
    line.name = name->text.toLower();
    line.value = ParseData(rest.sliced(1).trimmed(), wideTexts);
}

RegistryLine ReadLine(const JoinedLine& joined, const QString& key, bool wideTexts)
{
    using Kind = RegistryLine::Kind;
    RegistryLine line{joined.raw, IsRemark(joined.raw) ? Kind::Remark : Kind::Noise, key, {}, {}};
    if (joined.text.startsWith(u'[') && !key.isEmpty())
        line.kind = Kind::Key;
    else
        ReadValue(line, joined.text, wideTexts);
    return line;
}

} // namespace

QStringConverter::Encoding RegistryEncoding(const QByteArray& bytes)
{
    if (const auto marked = QStringConverter::encodingForData(bytes))
        return *marked;
    return bytes.isValidUtf8() ? QStringConverter::Utf8 : QStringConverter::Latin1;
}

QString DecodeRegistryText(const QByteArray& bytes)
{
    QStringDecoder decode(RegistryEncoding(bytes));
    return decode(bytes);
}

QList<RegistryLine> RegistryLines(const QString& text)
{
    const bool wideTexts = HasWideTexts(text);
    QList<RegistryLine> lines;
    QString key;
    for (const JoinedLine& joined : JoinedLines(text)) {
        if (joined.text.startsWith(u'['))
            key = KeyOf(joined.text);
        lines << ReadLine(joined, key, wideTexts);
    }
    return lines;
}

RegistryValues ParseRegistryText(const QString& text)
{
    RegistryValues values;
    for (const RegistryLine& line : RegistryLines(text)) {
        if (line.value && !line.key.isEmpty())
            values[line.key].insert(line.name, *line.value);
    }
    return values;
}

} // namespace qor
