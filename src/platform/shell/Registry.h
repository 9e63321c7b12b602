// The registry: one text file, read as a whole and changed in one step. It says which library makes a class and where
// the shared folders are.
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

/// A snapshot of the registry: the file is read once for any number of queries.
class Registry
{
public:
    /// A missing file holds no values. One that cannot be read, or that others could change (TrustProblem), counts as
    /// missing, which standard error says once.
    Registry();

    /// The value of this name, or the key's default value for the empty name; nothing when it does not exist.
    std::optional<RegistryValue> Query(RegistryRoot root, const QString& path, const QString& name) const;

private:
    RegistryValues mValues;
};

/// Both change the file in one step, or not at all when there is nothing to change. They raise RuntimeError when it
/// cannot be changed, or when others could change it too.
void AddToRegistry(const QList<RegistryEntry>& entries);
void RemoveFromRegistry(const QList<RegistryEntry>& entries);

} // namespace qor
