// Writes records that DelimitedReader reads back, or TabularReader with tabs between the fields.
#pragma once

#include <QStringList>

namespace qor {

enum class Quoting {
    Always,
    WhereNeeded, ///< only fields that would not be read back without them
};

/// One record without its line end. Double quotes inside quoted fields are doubled.
QString DelimitedLine(const QStringList& fields, Quoting quoting = Quoting::Always, QChar separator = u',');

} // namespace qor
