// The registry: one text file, read as a whole and changed in one step.
#pragma once

#include "platform/shell/RegistryEdit.h"
#include "platform/shell/RegistryText.h"

#include <optional>

namespace qor {

enum class RegistryRoot { ClassesRoot, LocalMachine };

/// The file that holds the registry: what KELDAR_REGISTRY names, else "/etc/Quorvanta/KELDAR+/registry.reg".
QString RegistryFileName();

/// "HKEY_CLASSES_ROOT\CLSID" for CLSID.
QString RegistryKeyPath(RegistryRoot root, const QString& path);

/// The registry as it stands when this is made: one reading of the file for any number of queries.
class Registry
{
public:
    /// A file that is not there holds no values. One that cannot be read, or that others could change (TrustProblem),
    /// holds none either; standard error says so once.
    Registry();

    /// The value of this name, the key's default value for the empty one; nothing when it does not exist.
    std::optional<RegistryValue> Query(RegistryRoot root, const QString& path, const QString& name) const;

private:
    RegistryValues mValues;
};

/// Both change the file in one step, and not at all when nothing is to change. RuntimeError when it cannot be changed,
/// or when others could change it as well.
void AddToRegistry(const QList<RegistryEntry>& entries);
void RemoveFromRegistry(const QList<RegistryEntry>& entries);

} // namespace qor
