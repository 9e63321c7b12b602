// Writes records that DelimitedReader reads back.
#pragma once

#include <QStringList>

class QIODevice;

namespace qor {

/// One line: every field in double quotes, those in it doubled, parted by commas, ended by CR LF; UTF-8. False when the
/// device does not take it.
bool WriteDelimited(QIODevice& device, const QStringList& fields);

} // namespace qor
