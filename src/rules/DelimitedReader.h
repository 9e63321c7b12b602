// Splits a text at commas and line ends into fields, from any device, in bounded memory.
#pragma once

#include "rules/TextBytes.h"

namespace qor {

/// A field ends at a comma, a line end (CR LF, LF or CR) or the end of the input; an end-of-file character (26) is one,
/// too. Blanks and tabs around a field are dropped. A field that begins with a double quote holds everything up to the
/// closing one, commas and line ends included; two double quotes in it stand for one. A blank line is one empty field.
///
/// Encoding: UTF-8 or UTF-16 with a byte order mark; without a mark UTF-8, but a field that is not valid UTF-8 is taken
/// for Windows-1252.
class DelimitedReader
{
public:
    /// A longer field raises RuntimeError, so that an input without commas and line ends cannot fill the memory.
    static constexpr qsizetype highestFieldLength = 8192; ///< bytes

    /// device: open for reading; it must outlive the reader.
    explicit DelimitedReader(QIODevice& device);

    bool AtEnd();
    /// The next field. Raises RuntimeError at the end of the input, when the device fails, and for a field
    /// that is too long.
    QString ReadField();
    /// The number of the line, from 1, on which the next field begins.
    qint64 Line() const { return mLine; }

private:
    static void Add(QByteArray& field, int byte);
    void SkipBlanks();
    QByteArray TakeQuoted();
    void TakeUnquoted(QByteArray& field);
    void TakeFieldEnd();

    TextBytes mText;
    qint64 mLine = 1;
};

} // namespace qor
