#include "interchange/RefusedRows.h"

#include "platform/runtime/RuntimeError.h"
#include "platform/shell/ReplaceFile.h"
#include "rules/EntryList.h"
#include "store/KELDARPlusFilesAndFolders.h"

#include <QFile>

namespace qor {

namespace {

QString SuggestedListName()
{
    return GetMiscFolder() + u"DIRNodeSuggested.csv"_s;
}

} // namespace

QString RejectedListName()
{
    return GetMiscFolder() + u"DIRNodeRejected.csv"_s;
}

void KeepRefusedRows(const ListReport& report)
{
    if (report.broken)
        return;
    if (report.refused.empty()) {
        QFile::remove(RejectedListName());
        QFile::remove(SuggestedListName());
        return;
    }
    try {
        MakeFolder(GetMiscFolder(), Readers::Owner);
        ReplaceFile(RejectedListName(), RejectedText(report.refused), {});
        ReplaceFile(SuggestedListName(), SuggestedText(report.refused), {});
    } catch (const RuntimeError&) {
        // As with the report's own file.
    }
}

} // namespace qor
