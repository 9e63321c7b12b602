// Writes records that DelimitedReader reads back, or TabularReader with tabs between the fields.
#pragma once

#include <QStringList>

namespace qor {

enum class Quoting {
    Always,
    WhereNeeded, ///< only fields that would not be read back without
};

/// One record without its line end: the fields with separators between, in double quotes, those inside doubled.
QString DelimitedLine(const QStringList& fields, Quoting quoting = Quoting::Always, QChar separator = u',');

} // namespace qor
