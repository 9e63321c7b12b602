// The captions over the columns of a table: what spreadsheets and address books call them in several languages.
#pragma once

#include "platform/runtime/Text.h"

#include <array>
#include <optional>
#include <QStringList>

namespace qor {

struct TableCaptions
{
    std::array<int, 3> columns; ///< of last name, first name and extension
    bool onlyKnown;             ///< no cell is anything but a known caption, of these or of another column
};

/// Nothing for a row that does not name all three columns. Case, accents and signs do not count. Where several captions
/// mean the same, "Extension" and "Phone" for one, the more exact one counts, and the first of equals.
std::optional<TableCaptions> ReadCaptions(const QStringList& row);

} // namespace qor
