#include "editor/Versions.h"

#include "editor/EntryCommands.h"
#include "editor/History.h"
#include "editor/ShownNode.h"
#include "form/EditorForm.h"
#include "form/VersionsDialog.h"
#include "platform/runtime/DateText.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/MsgBox.h"
#include "rules/EarlierVersions.h"
#include "rules/NodeDifferences.h"
#include "store/KELDARPlusFilesAndFolders.h"

namespace qor {

namespace {

QStringList DescribeVersion(const KeptNode& version, const std::vector<DirectoryEntry>& list)
{
    return {GeneralDateText(version.time), version.user, QString::number(version.node.entries.size()),
            DifferencesText(CompareEntries(list, version.node.entries))};
}

std::optional<int> Choose(EditorForm& form, const std::vector<KeptNode>& versions)
{
    const std::vector<DirectoryEntry> list = EntriesOf(*form.LVDirectory);
    QList<QStringList> described;
    for (const KeptNode& version : versions)
        described << DescribeVersion(version, list);
    return VersionsDialog(u"DIR %1"_s.arg(form.NodeNumber()), described, &form).Choose();
}

} // namespace

Versions::Versions(EditorForm& form, EntryCommands& entryCommands, History& history)
    : mForm(form), mEntryCommands(entryCommands), mHistory(history)
{
}

bool Versions::CanShow() const
{
    return HasVersions(GetMiscFolder(), mForm.NodeShown());
}

void Versions::Show()
{
    ReportErrors(u"ShowVersions"_s, [&] {
        mEntryCommands.LeaveEditMode();
        std::vector<KeptNode> versions = ReadVersions(GetMiscFolder(), mForm.NodeShown());
        if (versions.empty()) {
            MsgBox(u"There are no earlier versions of DIR %1 that you may read."_s.arg(mForm.NodeNumber()),
                   MsgBoxStyle::Information, u"Information"_s);
            return;
        }
        const auto chosen = Choose(mForm, versions);
        if (!chosen)
            return;
        std::vector<DirectoryEntry> entries = std::move(versions[static_cast<std::size_t>(*chosen)].node.entries);
        const History::Step step(mHistory, u"Restore "_s + CountedEntries(entries.size()));
        ShowEntries(mForm, std::move(entries));
        mForm.MarkChanged();
    });
}

} // namespace qor
