// What the tool prints.
#pragma once

#include "platform/runtime/Text.h"

#include <QStringList>

namespace qor {

/// The text with a visible sign for each control character and each character that turns the direction of
/// writing, so that nothing out of a file commands the terminal. Its length stays.
QString Harmless(QString text);

/// One harmless line on standard output.
void PrintLine(const QString& line);
/// Harmless lines, indented, with their cells below each other.
void PrintTable(const QList<QStringList>& lines);
/// One harmless record of CSV, whose values keep their tabs and line ends.
void PrintRecord(const QString& record);
/// JSON, with an escape in place of each character for which Harmless has a sign.
void PrintJson(const QByteArray& json);
/// One harmless line on standard error.
void PrintError(const QString& sentence);

/// Raises RuntimeError when standard output has not taken everything; a full disk shows here.
void FinishOutput();

} // namespace qor
