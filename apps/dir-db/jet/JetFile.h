// A Jet 4 database as read: the wanted tables with their rows as texts. Nothing here changes the file.
#pragma once

#include "platform/runtime/Text.h"

#include <QList>
#include <QStringList>

namespace qor {

struct JetColumn
{
    QString name;  ///< as the wish has it
    bool isNumber; ///< whole numbers and booleans; all else is text
};

struct JetTable
{
    QString name;             ///< as the wish has it
    QList<JetColumn> columns; ///< the wanted ones that the file has, in the order of the wish
    QStringList otherColumns;
    qint64 ownRowCount = 0;  ///< what the table itself says
    QList<QStringList> rows; ///< in the file's physical order; a null text stands for Null
};

struct JetDatabase
{
    QList<JetTable> tables; ///< the wanted ones, in the order of the wish
    QStringList otherTables;
};

/// A table to read and its columns; the file may write the names in other capitals.
struct JetWish
{
    QString table;
    QStringList columns;
};

/// Reads a private copy of the file in a process of its own, so that a damaged file cannot crash this program or fill
/// the machine's memory. Raises RuntimeError with one sentence: no such file, another format, damaged, a table is
/// missing, a value that cannot be taken as it is.
JetDatabase ReadJetFile(const QString& fileName, const QList<JetWish>& wishes);

} // namespace qor
