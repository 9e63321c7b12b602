#include "editor/ShownNode.h"

#include "form/EditorForm.h"

namespace qor {

void ShowHeader(EditorForm& form, const NodeHeader& header)
{
    form.txtDescription->Fill(header.description);
    form.txtAccessCode->Fill(header.accessCode);
    form.cmbUsePasswords->FillListIndex(header.usePasswords ? 0 : 1);
    form.cmbMSGNodeNumber->FillText(header.startingPrompt);
}

void ShowEntries(EditorForm& form, std::vector<DirectoryEntry> entries)
{
    std::vector<ListRow> rows;
    rows.reserve(entries.size());
    for (DirectoryEntry& entry : entries)
        rows.push_back(EntryRow(static_cast<int>(rows.size()) + 1, std::move(entry)));
    form.LVDirectory->Items().Clear();
    ForgetSort(*form.LVDirectory);
    form.LVDirectory->Items().Append(std::move(rows));
}

DirectoryNode NodeOn(const EditorForm& form, qint16 number)
{
    return {.identity = {form.PartitionShown(), number},
            .header = {.description = form.txtDescription->text(),
                       .accessCode = form.txtAccessCode->text(),
                       .usePasswords = form.cmbUsePasswords->ListIndex() == 0,
                       .startingPrompt = form.cmbMSGNodeNumber->Text()},
            .entries = EntriesOf(*form.LVDirectory)};
}

void ShowNode(EditorForm& form, DirectoryNode node)
{
    form.SetShowsNode(true);
    form.SetKnown({.stored = node, .attempted = {}, .isDeleted = false});
    ShowHeader(form, node.header);
    ShowEntries(form, std::move(node.entries));
}

void ShowNoNode(EditorForm& form)
{
    form.SetKnown({});
    ShowHeader(form, {});
    ShowEntries(form, {});
    form.SetShowsNode(false);
}

} // namespace qor
