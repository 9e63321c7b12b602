// The listing of a partition's directory nodes and their entries.
#pragma once

#include "rules/DirectoryNode.h"

namespace qor {

enum class ShowFormat { Table, Csv, Json };

struct ShowRequest
{
    QString fileName = {};
    Partition partition = {.config = 1, .number = 1};
    ShowFormat format = ShowFormat::Table;
    bool withPasswords = false; ///< and with access codes
};

/// Prints the values as they are stored: in a table and in CSV with a sign for each character that would control a
/// terminal, in JSON with the type that they are stored with. Raises RuntimeError for a file that does not open or has
/// other tables.
void ShowPartition(const ShowRequest& request);

} // namespace qor
