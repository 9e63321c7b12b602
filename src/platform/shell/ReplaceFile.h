// Files that take the place of older ones in one step.
#pragma once

#include "platform/runtime/Text.h"

class QByteArray;

namespace qor {

/// Puts the contents in place of the file, or makes it. Raises RuntimeError when any of them cannot be written; the
/// older file stays as it was then.
void ReplaceFile(const QString& fileName, const QByteArray& contents);

} // namespace qor
