// How a table holds the entries of a directory list, and how to recognise a file that is one.
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
    /// The captions of these columns; rows of nothing but them are skipped.
    QStringList captions{u"LastName"_s, u"FirstName"_s, u"Extension"_s};
    qint64 firstLine = 1; ///< from 1; lines above it are skipped

    // What was found at the beginning of the file.
    QString heading = {};   ///< the captions of all columns with separators between; empty where there are none
    int lines = 0;          ///< that are neither blank nor captions
    int entries = 0;        ///< how many of these are sound
    bool triedWhole = true; ///< else the counts are of a part of the file
};

/// The table that the user should be asked about before the file is read by the plain rule: because the plain rule
/// takes no entry and the table at least half of the lines, or because the first line is nothing but known captions,
/// other than those of the plain rule in its order. Nothing for a plain file. Tries at most 2,000 lines or 1 MiB, and
/// leaves the device where it was.
std::optional<TableLayout> DetectTable(QIODevice& device);

/// The best reading of a file as a table, when the user says that it is one: the one that takes most entries. Nothing
/// when none takes any and no captions are found.
std::optional<TableLayout> FindTable(QIODevice& device);

/// "Read as a table parted by semicolons, with the heading "Name;First Name;Ext", 212 of 214 lines are entries."
QString TableSentence(const TableLayout& layout);
/// The question before a file is read as a table.
QString TableQuestion(const TableLayout& layout);

} // namespace qor
