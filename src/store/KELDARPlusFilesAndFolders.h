// Where the shared data of the product family lies on this machine. Every folder ends in the platform's
// separator.
#pragma once

#include "platform/shell/Registry.h"

#include <QVariant>

namespace qor {

/// The shell folder's path without a separator at its end, or the empty text for an unknown id.
QString GetSpecialFolderPath(int csidl);

/// A registry value: text (String and ExpandString, whose references stay as they are), bytes (Binary), a
/// 32-bit integer (DWord), or text with zeros between its parts (MultiString). `defaultValue` when the key or
/// the value is not there. Raises error 1001 for any other type.
QVariant RegGetValue(RegistryRoot root, const QString& keyPath, const QString& valueName,
                     const QVariant& defaultValue = {});

QString GetCommonDocumentsFromRegistry();
QString GetCommonAppDataFromRegistry();

/// <common application data>/Quorvanta/KELDAR+/. Below the shell's folder if that is there, else below the registry's,
/// whether or not it exists.
QString GetProductAppDataFolder();
/// The same below the common documents folder.
QString GetProductDocumentsFolder();
/// <product documents>/<name>/Configs/, or <product documents>/Configs/ for an empty name.
QString GetConfigsFolder(const QString& name);
QString GetDatabaseFolder();
QString GetMiscFolder();

/// "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=<database folder>NewDB.mdb"
QString GetConnectionString();

} // namespace qor
