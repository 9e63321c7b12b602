// Keeps what an import refused in files beside its report, to be mended and imported again.
#pragma once

#include "platform/runtime/Text.h"

namespace qor {

struct ListReport;

/// DIRNodeRejected.csv in the Misc folder: refused entries as they were read, and everything after the point where
/// reading ended.
QString RejectedListName();

/// Writes that file and DIRNodeSuggested.csv, which has the same rows with what would make them sound. Removes both if
/// the list was taken whole, and leaves them alone if it was broken. Failing is silent: the report is on screen.
void KeepRefusedRows(const ListReport& report);

} // namespace qor
