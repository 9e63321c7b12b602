#include "platform/shell/RegistryEdit.h"

#include "platform/shell/RegistryText.h"

#include <algorithm>
#include <functional>

namespace qor {

namespace {

using Kind = RegistryLine::Kind;

constexpr QLatin1String lineEnd("\r\n");
constexpr QLatin1String header("Windows Registry Editor Version 5.00\r\n");

/// Changes the lines of a text. A text whose last line has no line end keeps it so: the line end that appended entries
/// need goes away with them.
template <typename Change>
QString Changed(const QString& text, Change&& change)
{
    const bool isOpen = !text.isEmpty() && !text.endsWith(u'\n');
    QList<RegistryLine> lines = RegistryLines(isOpen ? text + lineEnd : text);
    std::invoke(std::forward<Change>(change), lines);
    QString changed;
    for (const RegistryLine& line : lines)
        changed += line.raw;
    if (isOpen && changed.endsWith(lineEnd))
        changed.chop(lineEnd.size());
    return changed;
}

QString Quoted(QString text)
{
    return u'"' + text.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s) + u'"';
}

RegistryLine ValueLine(const QString& key, const QString& name, const QString& text)
{
    const QString raw = (name.isEmpty() ? u"@"_s : Quoted(name)) + u'=' + Quoted(text) + lineEnd;
    return {raw, Kind::Value, key.toLower(), name.toLower(), {}};
}

bool IsKeyLine(const RegistryLine& line, const QString& key)
{
    return line.kind == Kind::Key && line.key == key.toLower();
}

/// Where to add a value of the key: right after the key's line, which is appended when it is missing.
qsizetype PlaceIn(const QString& key, QList<RegistryLine>& lines)
{
    auto found = std::ranges::find_if(lines, [&](const auto& line) { return IsKeyLine(line, key); });
    if (found != lines.end())
        return found - lines.begin() + 1;
    lines << RegistryLine{lineEnd + u'[' + key + u']' + lineEnd, Kind::Key, key.toLower(), {}, {}};
    return lines.size();
}

void Put(const RegistryEntry& entry, QList<RegistryLine>& lines)
{
    qsizetype place = PlaceIn(entry.key, lines);
    for (const auto& [name, text] : entry.texts) {
        const RegistryLine value = ValueLine(entry.key, name, text);
        // Of several with this name, the last is the one that is read.
        auto found = std::ranges::find_if(lines.rbegin(), lines.rend(), [&](const RegistryLine& line) {
            return line.kind == Kind::Value && line.key == value.key && line.name == value.name;
        });
        if (found != lines.rend())
            *found = value;
        else
            lines.insert(place++, value);
    }
}

bool IsValueOf(const RegistryEntry& entry, const RegistryLine& line)
{
    const auto isNamed = [&](const auto& text) { return text.first.toLower() == line.name; };
    return line.kind == Kind::Value && line.key == entry.key.toLower() && std::ranges::any_of(entry.texts, isNamed);
}

/// Whether the key holds anything but remarks, or has subkeys.
bool HoldsAnything(const QString& key, const QList<RegistryLine>& lines)
{
    return std::ranges::any_of(lines, [key = key.toLower()](const RegistryLine& line) {
        if (line.kind == Kind::Key)
            return line.key.startsWith(key + u'\\');
        return line.kind != Kind::Remark && line.key == key;
    });
}

void ChopEmptyLine(QString& raw)
{
    if (raw == lineEnd || raw.endsWith(u"\n"_s + lineEnd))
        raw.chop(lineEnd.size());
}

/// Removes the key's line and the empty line before it.
void RemoveKey(const QString& key, QList<RegistryLine>& lines)
{
    for (qsizetype at = lines.size() - 1; at >= 0; --at) {
        if (!IsKeyLine(lines[at], key))
            continue;
        lines.removeAt(at);
        if (at > 0)
            ChopEmptyLine(lines[at - 1].raw);
    }
}

} // namespace

QString WithEntries(const QString& text, const QList<RegistryEntry>& entries)
{
    return Changed(text.isEmpty() ? QString(header) : text, [&](QList<RegistryLine>& lines) {
        for (const RegistryEntry& entry : entries)
            Put(entry, lines);
    });
}

QString WithoutEntries(const QString& text, const QList<RegistryEntry>& entries)
{
    return Changed(text, [&](QList<RegistryLine>& lines) {
        for (const RegistryEntry& entry : entries)
            lines.removeIf([&](const RegistryLine& line) { return IsValueOf(entry, line); });
        // Subkeys come after their key and have to go before it.
        std::ranges::for_each(entries.rbegin(), entries.rend(), [&](const RegistryEntry& entry) {
            if (!HoldsAnything(entry.key, lines))
                RemoveKey(entry.key, lines);
        });
    });
}

} // namespace qor
