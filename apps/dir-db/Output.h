// Prints for the tool. Nothing that comes out of a file controls the terminal.
#pragma once

#include "platform/runtime/Text.h"

#include <QStringList>

namespace qor {

/// The text with a visible sign for each control character and each character that turns the direction of writing. Its
/// length stays.
QString Harmless(QString text);

/// One harmless line on standard output.
void PrintLine(const QString& line);
/// Harmless lines, indented, in columns.
void PrintTable(const QList<QStringList>& lines);
/// One harmless record of CSV, whose values keep their tabs and line ends.
void PrintRecord(const QString& record);
/// JSON, with an escape in place of each character for which Harmless has a sign.
void PrintJson(const QByteArray& json);
/// One harmless line on standard error.
void PrintError(const QString& sentence);

/// Raises RuntimeError when standard output did not take everything, which is where a full disk shows.
void FinishOutput();

} // namespace qor
