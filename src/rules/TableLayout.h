// How a table holds the entries of a directory list, and how a file that may be one is recognised.
#pragma once

#include "platform/runtime/Text.h"

#include <array>
#include <optional>
#include <QStringList>

class QIODevice;

namespace qor {

struct TableLayout
{
    char separator = ',';
    std::array<int, 3> columns{0, 1, 2}; ///< where last name, first name and extension stand
    /// How these columns are called; rows that hold just this are left out.
    QStringList captions{u"LastName"_s, u"FirstName"_s, u"Extension"_s};
    qint64 firstLine = 1; ///< from 1; what stands above is left out

    // What was found at the beginning of the file.
    QString heading = {};   ///< the captions of all columns with separators between; empty where there are none
    int lines = 0;          ///< that are neither blank nor captions
    int entries = 0;        ///< of these the ones that are sound
    bool triedWhole = true; ///< else the counts are of the part that was tried
};

/// The table that a person should be asked about before the file is read by the plain rule: that takes no entry and
/// the table at least half of the lines; or the first line holds nothing but known captions, and not just those of the
/// plain rule in its order. Nothing for a plain file. At most 2,000 lines or 1 MiB are tried; what was read is put
/// back.
std::optional<TableLayout> DetectTable(QIODevice& device);

/// The table that a file holds if a person says that it is one: the reading that takes most entries. Nothing where none
/// takes any and no captions are found.
std::optional<TableLayout> FindTable(QIODevice& device);

/// "Read as a table parted by semicolons, with the heading "Name;First Name;Ext", 212 of 214 lines are entries."
QString TableSentence(const TableLayout& layout);
/// The question before a file is read as a table.
QString TableQuestion(const TableLayout& layout);

} // namespace qor
