// The registry: one text file, read anew at each opening of a key, changed in one step.
#pragma once

#include "platform/shell/RegistryText.h"

#include <optional>
#include <QStringList>

namespace qor {

enum class RegistryRoot { ClassesRoot, LocalMachine };

/// The file that holds the registry: what KELDAR_REGISTRY names, else "/etc/Quorvanta/KELDAR+/registry.reg".
QString RegistryFileName();

/// A key opened for reading.
class RegistryKey
{
public:
    /// Nothing when the key, or a registry file that can be read, does not exist.
    static std::optional<RegistryKey> Open(RegistryRoot root, const QString& path);

    std::optional<RegistryValue> Query(const QString& name) const;

private:
    explicit RegistryKey(QHash<QString, RegistryValue> values) : mValues(std::move(values)) {}

    QHash<QString, RegistryValue> mValues;
};

/// Named texts of one key, in the order in which they are written; the empty name is the key's default value.
struct RegistryEntry
{
    QString path; ///< below HKEY_CLASSES_ROOT
    QList<std::pair<QString, QString>> texts;
};

/// Replaces the keys of HKEY_CLASSES_ROOT named in `remove`, with everything below them, by `add`. All other
/// lines of the file stay as they are; the file changes in one step. Raises RuntimeError when it cannot be changed.
void ChangeClassKeys(const QStringList& remove, const QList<RegistryEntry>& add);

} // namespace qor
