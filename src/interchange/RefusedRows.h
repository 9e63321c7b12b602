// The files beside the import's report with what was refused, so that it can be mended and imported again.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

struct ListReport;

/// DIRNodeRejected.csv in the Misc folder: refused entries as they were read, and what stands behind the end of the
/// reading.
QString RejectedListName();

/// Writes that file and DIRNodeSuggested.csv, its rows with what would make them sound; removes both where the list was
/// taken whole, and leaves them where it was broken. Failing to write them is not told: the report is on screen.
void KeepRefusedRows(const ListReport& report);

} // namespace qor
