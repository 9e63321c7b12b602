// Directory lists as tables, which spreadsheets write into files and exchange over the clipboard.
#pragma once

#include "rules/DirectoryNode.h"
#include "rules/RowReader.h"
#include "rules/TableLayout.h"

#include <memory>
#include <QIODevice>

namespace qor {

/// The rows of a table, split by RowReader, in the three columns of an entry. Rows that are empty there, and rows of
/// nothing but the captions, are skipped.
class TabularReader
{
public:
    static constexpr qsizetype highestFieldLength = RowReader::highestFieldLength;

    /// Tabs separate the fields; in a text without any, semicolons do, and in one without those commas. Last name,
    /// first name and extension are the first three columns.
    explicit TabularReader(const QString& text);
    /// device: open for reading; it must outlive the reader. Raises RuntimeError when it fails, as ReadRow does.
    TabularReader(QIODevice& device, const TableLayout& layout);

    bool AtEnd() const { return mFieldCount == 0; }
    /// The next row: its three fields, without trailing ones that the line does not have; none at the end.
    QStringList ReadRow();
    /// The same as an entry without a prompt.
    DirectoryEntry ReadEntry();
    /// The entry that ReadEntry would return.
    const DirectoryEntry& NextEntry() const { return mEntry; }
    void Skip();
    /// The number of the line, from 1, on which the next row begins.
    qint64 Line() const { return mLine; }

private:
    TabularReader(std::unique_ptr<QIODevice> text, const TableLayout& layout);
    void ReadFields();
    bool IsLeftOut() const;

    std::unique_ptr<QIODevice> mText;
    TableLayout mLayout;
    RowReader mReader;
    DirectoryEntry mEntry; ///< the next one
    int mFieldCount = 0;
    qint64 mLine = 1;
};

/// Entries for a spreadsheet or TabularReader: one line each, with its prompt but without its password.
QString TabularText(const std::vector<DirectoryEntry>& entries);

} // namespace qor
