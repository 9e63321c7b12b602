#include "platform/shell/Registry.h"

#include "platform/runtime/RuntimeError.h"
#include "platform/runtime/StandardError.h"
#include "platform/shell/ReadFile.h"
#include "platform/shell/ReplaceFile.h"
#include "platform/shell/TrustedPath.h"

#include <QFileInfo>
#include <QLockFile>
#include <QStringEncoder>
#include <QtGlobal>

namespace qor {

namespace {

/// problem: how the sentence goes on after the file's name.
[[noreturn]] void Fail(const QString& problem)
{
    throw RuntimeError(ErrorNumber::FileAccess, u"The registry file %1 %2"_s.arg(RegistryFileName(), problem));
}

/// Whoever can write the file decides what is loaded into this process.
void RequireTrusted()
{
    if (const auto problem = TrustProblem(RegistryFileName()))
        Fail(u"is not used: "_s + *problem);
}

/// Empty when there is no file.
QByteArray ReadRegistryFile()
{
    constexpr qint64 highestSize = 1024LL * 1024;
    RequireTrusted();
    try {
        return ReadWholeFile(RegistryFileName(), highestSize).value_or(QByteArray());
    } catch (const RuntimeError& error) {
        throw RuntimeError(error.Number(), u"The registry file %1 It was left as it is."_s.arg(error.Description()));
    }
}

/// The text in the encoding that the file had before, with a byte order mark if it had one.
QByteArray Encoded(const QString& text, const QByteArray& before)
{
    const bool hasMark = QStringConverter::encodingForData(before).has_value();
    QStringEncoder encode(RegistryEncoding(before),
                          hasMark ? QStringEncoder::Flag::WriteBom : QStringEncoder::Flag::Default);
    QByteArray bytes = encode(text);
    if (encode.hasError())
        Fail(u"cannot be written: its encoding lacks a character. Save it as UTF-8."_s);
    return bytes;
}

void WriteRegistryFile(const QByteArray& bytes)
{
    try {
        ReplaceFile(RegistryFileName(), bytes, {.readers = Readers::Everybody, .followsLink = true});
    } catch (const RuntimeError& error) {
        throw RuntimeError(error.Number(), u"The registry file "_s + error.Description());
    }
}

/// Makes programs that change the file at the same time take turns.
void LockRegistryFile(QLockFile& lock)
{
    constexpr int patience = 10'000; // ms
    // Where no lock can be made, the write will say why.
    if (!lock.tryLock(patience) && lock.error() == QLockFile::LockFailedError)
        Fail(u"is being changed by another program. Try again."_s);
    QFile::setPermissions(lock.fileName(), QFile::ReadOwner | QFile::WriteOwner); // whatever the umask
}

using Edit = QString (*)(const QString& text, const QList<RegistryEntry>& entries);

void ChangeRegistry(Edit edit, const QList<RegistryEntry>& entries)
{
    QLockFile lock(RegistryFileName() + u".lock"_s);
    LockRegistryFile(lock);
    const QByteArray before = ReadRegistryFile();
    const QString text = DecodeRegistryText(before);
    const QString changed = edit(text, entries);
    if (changed == text)
        return;
    if (Encoded(text, before) != before)
        Fail(u"holds bytes that are no text. It was left as it is; mend it and try again."_s);
    WriteRegistryFile(Encoded(changed, before));
}

} // namespace

QString RegistryFileName()
{
    const QString named = qEnvironmentVariable("KELDAR_REGISTRY");
    return named.isEmpty() ? u"/etc/Quorvanta/KELDAR+/registry.reg"_s : named;
}

QString RegistryKeyPath(RegistryRoot root, const QString& path)
{
    const QLatin1String name(root == RegistryRoot::ClassesRoot ? "HKEY_CLASSES_ROOT" : "HKEY_LOCAL_MACHINE");
    return name + u'\\' + path;
}

Registry::Registry()
{
    try {
        mValues = ParseRegistryText(DecodeRegistryText(ReadRegistryFile()));
    } catch (const RuntimeError& error) {
        TellOnce(u"registry"_s, error.Description());
    }
}

std::optional<RegistryValue> Registry::Query(RegistryRoot root, const QString& path, const QString& name) const
{
    const auto values = mValues.value(RegistryKeyPath(root, path).toLower());
    const auto value = values.constFind(name.toLower());
    return value == values.constEnd() ? std::nullopt : std::optional(*value);
}

void AddToRegistry(const QList<RegistryEntry>& entries)
{
    RequireTrusted();
    MakeFolder(QFileInfo(RegistryFileName()).absolutePath(), Readers::Everybody);
    ChangeRegistry(WithEntries, entries);
}

void RemoveFromRegistry(const QList<RegistryEntry>& entries)
{
    ChangeRegistry(WithoutEntries, entries);
}

} // namespace qor
