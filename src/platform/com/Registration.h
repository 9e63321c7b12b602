// The entries that let hosts find a class by its programmatic identifier.
#pragma once

#include "platform/runtime/Text.h"
#include "QOR_Component.h"

#include <optional>

namespace qor {

struct RegisteredClass
{
    CLSID clsid;
    QString programId;
    QString libraryPath; ///< absolute
};

/// "{6E2B8C41-93D7-...}", in upper case.
QString GuidText(const GUID& guid);

/// Both answer with a sentence when the registry file could not be changed, else nothing.
std::optional<QString> RegisterClass(const RegisteredClass& registered);
std::optional<QString> UnregisterClass(const CLSID& clsid, const QString& programId);

} // namespace qor
