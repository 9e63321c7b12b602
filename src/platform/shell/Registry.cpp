#include "platform/shell/Registry.h"

#include "platform/runtime/RuntimeError.h"
#include "platform/shell/ReplaceFile.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QStringEncoder>
#include <QtGlobal>

namespace qor {

namespace {

constexpr QLatin1String defaultHeader("Windows Registry Editor Version 5.00\r\n");

QString RootName(RegistryRoot root)
{
    return root == RegistryRoot::ClassesRoot ? u"HKEY_CLASSES_ROOT"_s : u"HKEY_LOCAL_MACHINE"_s;
}

/// problem: the sentence behind the name of the file.
[[noreturn]] void Fail(const QString& problem)
{
    throw RuntimeError(ErrorNumber::FileAccess, u"The registry file %1 %2"_s.arg(RegistryFileName(), problem));
}

/// Nothing where there is no file.
QByteArray ReadRegistryFile()
{
    QFile file(RegistryFileName());
    if (!file.exists())
        return {};
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        Fail(u"cannot be read: %1. It was left as it is."_s.arg(file.errorString()));
    return bytes;
}

QString Escaped(QString text)
{
    return text.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s);
}

bool IsAtOrBelow(const QString& path, const QString& key)
{
    return path == key || path.startsWith(key + u'\\');
}

/// The text without the sections whose key is one of `keys` or lies below one. Comments stay.
QString WithoutKeys(const QString& text, const QStringList& keys)
{
    QString kept;
    bool drop = false;
    for (qsizetype at = 0; at < text.size();) {
        qsizetype end = text.indexOf(u'\n', at);
        end = end < 0 ? text.size() : end + 1;
        const QString line = text.sliced(at, end - at);
        const QString trimmed = line.trimmed().toLower();
        if (trimmed.startsWith(u'[') && trimmed.endsWith(u']')) {
            const QString path = trimmed.sliced(1).chopped(1);
            drop = std::any_of(keys.begin(), keys.end(),
                               [&](const QString& key) { return IsAtOrBelow(path, key.toLower()); });
        }
        if (!drop || trimmed.startsWith(u';'))
            kept += line;
        at = end;
    }
    return kept;
}

QString EntryText(const RegistryEntry& entry)
{
    QString text = u'[' + RootName(RegistryRoot::ClassesRoot) + u'\\' + entry.path + u"]\r\n"_s;
    for (const auto& [name, value] : entry.texts) {
        text += name.isEmpty() ? u"@"_s : u'"' + Escaped(name) + u'"';
        text += u"=\""_s + Escaped(value) + u"\"\r\n"_s;
    }
    return text + u"\r\n"_s;
}

/// Writes in the encoding that the file had before, with its mark where it had one.
void WriteRegistryFile(const QString& text, const QByteArray& before)
{
    const bool hasMark = QStringConverter::encodingForData(before).has_value();
    QStringEncoder encode(RegistryEncoding(before),
                          hasMark ? QStringEncoder::Flag::WriteBom : QStringEncoder::Flag::Default);
    const QByteArray bytes = encode(text);
    if (encode.hasError())
        Fail(u"cannot be written: its encoding lacks a character. Save it as UTF-8."_s);
    try {
        ReplaceFile(RegistryFileName(), bytes);
    } catch (const RuntimeError& error) {
        throw RuntimeError(error.Number(), u"The registry file "_s + error.Description());
    }
}

} // namespace

QString RegistryFileName()
{
    const QString named = qEnvironmentVariable("KELDAR_REGISTRY");
    return named.isEmpty() ? u"/etc/Quorvanta/KELDAR+/registry.reg"_s : named;
}

Registry::Registry()
{
    try {
        mValues = ParseRegistryText(DecodeRegistryText(ReadRegistryFile()));
    } catch (const RuntimeError&) {
        // No values; who changes the registry is told why.
    }
}

std::optional<RegistryValue> Registry::Query(RegistryRoot root, const QString& path, const QString& name) const
{
    const auto values = mValues.value((RootName(root) + u'\\' + path).toLower());
    const auto value = values.constFind(name.toLower());
    return value == values.constEnd() ? std::nullopt : std::optional(*value);
}

void ChangeClassKeys(const QStringList& remove, const QList<RegistryEntry>& add)
{
    if (!add.isEmpty())
        QDir().mkpath(QFileInfo(RegistryFileName()).absolutePath());
    QLockFile lock(RegistryFileName() + u".lock"_s);
    constexpr int patience = 10'000; // ms
    // Where there can be no lock the write below says why.
    if (!lock.tryLock(patience) && lock.error() == QLockFile::LockFailedError)
        Fail(u"is being changed by another program. Try again."_s);
    const QByteArray before = ReadRegistryFile();
    QStringList keys;
    for (const QString& path : remove)
        keys << RootName(RegistryRoot::ClassesRoot) + u'\\' + path;

    const QString old = DecodeRegistryText(before);
    QString text = WithoutKeys(old, keys);
    if (!add.isEmpty()) {
        if (text.isEmpty())
            text = defaultHeader + u"\r\n"_s;
        else if (!text.endsWith(u'\n'))
            text += u"\r\n"_s;
        for (const RegistryEntry& entry : add)
            text += EntryText(entry);
    }
    if (text != old)
        WriteRegistryFile(text, before);
}

} // namespace qor
