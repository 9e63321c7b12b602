// The registry: one text file, read as a whole and changed in one step.
#pragma once

#include "platform/shell/RegistryText.h"

#include <optional>
#include <QStringList>

namespace qor {

enum class RegistryRoot { ClassesRoot, LocalMachine };

/// The file that holds the registry: what KELDAR_REGISTRY names, else "/etc/Quorvanta/KELDAR+/registry.reg".
QString RegistryFileName();

/// The registry as it stands when this is made: one reading of the file for any number of queries.
class Registry
{
public:
    /// A file that is not there, or that cannot be read, holds no values.
    Registry();

    /// The value of this name, the key's default value for the empty one; nothing when it does not exist.
    std::optional<RegistryValue> Query(RegistryRoot root, const QString& path, const QString& name) const;

private:
    RegistryValues mValues;
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
