// The settings that the product family saves per user.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

/// A saved text of an application, or the empty text when it is not set. Kept in the user's configuration folder, in
/// the file Quorvanta/<application>.ini.
QString GetSetting(const QString& application, const QString& section, const QString& key);
/// Saves a text there. Failing is silent.
void SaveSetting(const QString& application, const QString& section, const QString& key, const QString& text);

} // namespace qor
