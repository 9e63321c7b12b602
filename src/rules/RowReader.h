// Splits a text into rows of fields, as spreadsheets write them.
#pragma once

#include "rules/TextBytes.h"

#include <QStringList>

namespace qor {

/// A line ends with CR LF, LF or CR. Blanks around a field are dropped. A field that begins with a double quote holds
/// everything up to the closing one, separators and line ends included; two double quotes in it stand for one. If
/// nothing closes it within the length of a spreadsheet's longest cell, the quote is an ordinary character.
class RowReader
{
public:
    /// In characters. A longer field is cut and ends with an ellipsis, so that no check takes it for a name.
    static constexpr qsizetype highestFieldLength = 8192;

    /// device: open for reading; it must outlive the reader. separator: an ASCII character.
    RowReader(QIODevice& device, char separator) : mText(device), mSeparator(separator) {}

    /// Each of these raises RuntimeError when the device fails.
    bool AtEnd() { return mText.Peek() == TextBytes::noByte; }
    /// Reads the next field of the row into *field, or skips it if that is null; false when it was the last one. Every
    /// row has a field.
    bool ReadField(QString* field);
    /// The fields of the next row; of more than highestCount only the first ones.
    QStringList ReadRow(qsizetype highestCount);
    /// The number of the line, from 1, on which the next row begins.
    qint64 Line() const { return mLine; }

private:
    void SkipBlanks();
    bool TakeQuoted(QString* field);
    QByteArrayView TakeUnquoted();
    bool TakeFieldEnd();

    TextBytes mText;
    char mSeparator;
    qint64 mLine = 1;
    QByteArray mLong; ///< a field that does not come in one piece
};

} // namespace qor
