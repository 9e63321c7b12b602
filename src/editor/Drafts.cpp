#include "editor/Drafts.h"

#include "editor/EntryCommands.h"
#include "editor/History.h"
#include "editor/ShownNode.h"
#include "form/EditorForm.h"
#include "platform/runtime/DateText.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/runtime/StandardError.h"
#include "rules/NodeLoading.h"
#include "store/KELDARPlusFilesAndFolders.h"

#include <QFile>

namespace qor {

namespace {

std::vector<int> RedRows(const ListView& list)
{
    std::vector<int> rows;
    for (int row = 0; row < list.Items().RowCount(); ++row) {
        if (IsMarkedInvalid(list, row))
            rows.push_back(row);
    }
    return rows;
}

} // namespace

Drafts::Drafts(EditorForm& form, History& history) : mForm(form), mHistory(history)
{
    mHistory.SetAfterStep([this] { Keep(); });
}

Drafts::~Drafts()
{
    mHistory.SetAfterStep([] {});
}

void Drafts::Keep()
{
    if (mForm.cmdApply->isEnabled())
        Write(false);
}

bool Drafts::KeepForSave()
{
    return Write(true);
}

bool Drafts::Write(bool synced)
{
    KeptNode draft = KeptNow(NodeOn(mForm, mForm.NodeNumber()));
    draft.incompleteRows = RedRows(*mForm.LVDirectory);
    if (mForm.Stored() != nullptr)
        draft.stored = Fingerprint(*mForm.Stored());
    try {
        WriteDraft(GetMiscFolder(), draft, synced);
        return true;
    } catch (const RuntimeError& error) {
        TellOnce(u"drafts"_s, u"unsaved changes are not kept. "_s + error.Description());
        return false;
    }
}

bool Drafts::IsStored(const DirectoryNode& node) const
{
    return mForm.Stored() != nullptr && IsLoadedFrom(*mForm.Stored(), node, mForm.HighestMessageNode());
}

void Drafts::DropIfSaved()
{
    if (IsStored(NodeOn(mForm, mForm.NodeNumber())))
        RemoveOwnDraft(GetMiscFolder(), mForm.NodeShown());
}

void Drafts::Drop()
{
    if (mForm.Stored() != nullptr)
        RemoveOwnDraft(GetMiscFolder(), mForm.NodeShown());
    else
        DiscardDraft(OwnDraftName(GetMiscFolder(), mForm.NodeShown()));
}

void Drafts::Offer()
{
    if (!mForm.ShowsNode() || mForm.cmdApply->isEnabled())
        return;
    QStringList passed;
    while (auto left = FindLeftDraft(GetMiscFolder(), mForm.NodeShown(), passed)) {
        passed << left->fileName;
        if (!IsStored(left->draft.node)) {
            OfferOne(std::move(*left));
            return;
        }
        QFile::remove(left->fileName);
    }
}

/// Where nobody answers, as when the host quits, the draft stays for the next time.
void Drafts::OfferOne(LeftDraft left)
{
    const MsgBoxAnswer answer = AskWhetherWanted(left.draft);
    if (answer == MsgBoxAnswer::Yes)
        Restore(std::move(left));
    else if (answer == MsgBoxAnswer::No)
        DiscardDraft(left.fileName);
}

MsgBoxAnswer Drafts::AskWhetherWanted(const KeptNode& draft) const
{
    QString question =
        u"Changes to DIR %1 of %2 were not saved.\r\nDo you want to restore them?"_s.arg(mForm.NodeNumber())
            .arg(GeneralDateText(draft.time));
    if (mForm.Stored() != nullptr && draft.stored != Fingerprint(*mForm.Stored()))
        question += u"\r\nThe directory was saved since then."_s;
    return MsgBox(question, MsgBoxStyle::YesNo | MsgBoxStyle::Question, u"Question"_s);
}

void Drafts::Restore(LeftDraft left)
{
    {
        const History::Step step(mHistory, u"Restore "_s + CountedEntries(left.draft.node.entries.size()));
        ShowHeader(mForm, left.draft.node.header);
        ShowEntries(mForm, std::move(left.draft.node.entries));
        for (const int row : left.draft.incompleteRows)
            PaintRow(*mForm.LVDirectory, row, invalidRowColour);
        mForm.MarkChanged();
    }
    const bool isKept = Write(false);
    if (isKept && left.fileName != OwnDraftName(GetMiscFolder(), mForm.NodeShown()))
        QFile::remove(left.fileName);
}

} // namespace qor
