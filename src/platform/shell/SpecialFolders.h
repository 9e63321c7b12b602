// The machine-wide folders under which the product family keeps its data.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

/// Ids of the shell folders in use.
inline constexpr int CSIDL_COMMON_APPDATA = 35;
inline constexpr int CSIDL_COMMON_DOCUMENTS = 46;

/// The folder's path without a separator at its end: "/var/lib" or what KELDAR_COMMON_APPDATA names, "/srv"
/// or what KELDAR_COMMON_DOCUMENTS names. Empty for any other id. The folder need not exist.
QString ShellFolderPath(int csidl);

} // namespace qor
