// The text in which spreadsheets exchange rows over the clipboard.
#pragma once

#include "rules/DirectoryNode.h"

#include <QStringList>

namespace qor {

/// Splits a text into rows of fields. Tabs separate the fields; in a text without any, semicolons do, and in one
/// without those commas. A line ends with CR LF, LF or CR. Blanks around a field are dropped. A field that begins with
/// a double quote holds everything up to the closing one, separators and line ends included; two double quotes in it
/// stand for one. Where nothing closes it, the quote is a character as others are.
///
/// Only the first three columns are read. Rows that are empty in them, and rows of the columns' captions, are left out.
class TabularReader
{
public:
    /// A longer field is cut and ends with an ellipsis, so that no check takes it for a name.
    static constexpr qsizetype highestFieldLength = 8192;

    explicit TabularReader(QString text);

    bool AtEnd() const { return mRow.isEmpty(); }
    /// The next row: one to three fields; none at the end.
    QStringList ReadRow();

private:
    void Advance();
    QStringList ReadLine();
    QString ReadField();
    QString TakeQuoted();
    QStringView TakeUnquoted();
    qsizetype ClosingQuote(qsizetype from) const;
    bool EndsField(qsizetype position) const;
    bool TakeSeparator();
    void TakeLineEnd();

    QString mText;
    QChar mSeparator;
    qsizetype mPosition = 0;
    QStringList mRow;
};

/// Entries as a spreadsheet and TabularReader read them: a line for each, with its prompt and without its password.
QString TabularText(const std::vector<DirectoryEntry>& entries);

} // namespace qor
