// Exports the entries of a directory node as a list.
#pragma once

#include "rules/DirectoryNode.h"

namespace qor {

struct ListExportRequest
{
    QString fileName; ///< of the database
    NodeIdentity node{{1, 1}, 0};
    QString listName = {}; ///< a new file; empty for standard output
};

/// Writes what the editor would write. Returns whether every entry is in the list; those that are not are printed.
/// Raises RuntimeError when it fails; then there is no file.
bool ExportList(const ListExportRequest& request);

} // namespace qor
