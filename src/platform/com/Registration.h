// The entries that let hosts find a class by its programmatic identifier.
#pragma once

#include "platform/runtime/Text.h"
#include "QOR_Component.h"

namespace qor {

struct RegisteredClass
{
    CLSID clsid;
    QString programId;
    QString libraryPath; ///< absolute
};

/// "{6E2B8C41-93D7-...}", in upper case.
QString GuidText(const GUID& guid);

/// Both raise RuntimeError when the registry file cannot be changed.
void RegisterClass(const RegisteredClass& registered);
void UnregisterClass(const CLSID& clsid, const QString& programId);

} // namespace qor
