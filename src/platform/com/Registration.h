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

/// Both leave what others have under the same keys alone, and raise RuntimeError when the registry file cannot be
/// changed.
void RegisterClass(const RegisteredClass& registered);
void UnregisterClass(const CLSID& clsid, const QString& programId);

} // namespace qor
