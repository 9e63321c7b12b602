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
    bool onlyKnown;             ///< every cell is a known caption, of these or of another column
};

/// The columns that a row names; nothing unless it names all three. Case, accents and punctuation do not count. Of
/// captions with the same meaning, such as "Extension" and "Phone", the more exact one counts, and the first of equals.
std::optional<TableCaptions> ReadCaptions(const QStringList& row);

} // namespace qor
