#include "editor/RecordNavigation.h"

#include "editor/BusinessRules.h"
#include "editor/Commit.h"
#include "editor/Drafts.h"
#include "editor/EntryCommands.h"
#include "editor/History.h"
#include "form/EditorForm.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/MsgBox.h"

namespace qor {

RecordNavigation::RecordNavigation(EditorForm& form, BusinessRules& rules, EntryCommands& entryCommands, Commit& commit,
                                   History& history, Drafts& drafts)
    : mForm(form), mRules(rules), mEntryCommands(entryCommands), mCommit(commit), mHistory(history), mDrafts(drafts)
{
}

void RecordNavigation::cmdFirst_Click()
{
    Move(u"cmdFirst_Click"_s, 0, [](int, int) { return 0; });
}

void RecordNavigation::cmdPrevious_Click()
{
    Move(u"cmdPrevious_Click"_s, 0, [](int index, int) { return index - 1; });
}

void RecordNavigation::cmdNext_Click()
{
    Move(u"cmdNext_Click"_s, mForm.cmbNode->ListCount() - 1, [](int index, int) { return index + 1; });
}

void RecordNavigation::cmdLast_Click()
{
    Move(u"cmdLast_Click"_s, mForm.cmbNode->ListCount() - 1, [](int, int last) { return last; });
}

/// Choosing in the selector raises its Click, which loads the node. The mark of changes is cleared before the test for
/// the end, so No at the end leaves the edits on screen, as clean.
void RecordNavigation::Move(const QString& procedure, int end, int (*target)(int index, int last))
{
    ReportErrors(procedure, [&] {
        mEntryCommands.LeaveEditMode();
        if (mCommit.AskToSaveChanges() == MsgBoxAnswer::Cancel)
            return;
        mForm.MarkUnchanged();
        const int index = mForm.cmbNode->ListIndex();
        if (index == end)
            return;
        mForm.cmbNode->SetListIndex(target(index, mForm.cmbNode->ListCount() - 1));
        mForm.SetNodeNumber(NodeNumberAt(mForm.cmbNode->ListIndex()));
    });
}

void RecordNavigation::cmbNode_Click()
{
    ReportErrors(u"cmbNode_Click"_s, [&] {
        mEntryCommands.LeaveEditMode();
        const qint16 chosen = NodeNumberAt(mForm.cmbNode->ListIndex());
        if (chosen == mForm.NodeNumber() && mForm.ShowsNode())
            return;
        if (mCommit.AskToSaveChanges() == MsgBoxAnswer::Cancel) {
            SelectNodeOnDisplay();
            return;
        }
        mRules.LoadData(mForm, chosen);
        mHistory.Clear();
        mForm.MarkUnchanged();
        mForm.SetNodeNumber(chosen);
        mDrafts.Offer();
    });
}

/// The Click that this raises finds the node on display and does nothing.
void RecordNavigation::SelectNodeOnDisplay()
{
    for (int index = 0; index < mForm.cmbNode->ListCount(); ++index) {
        if (NodeNumberAt(index) == mForm.NodeNumber()) {
            mForm.cmbNode->SetListIndex(index);
            return;
        }
    }
}

qint16 RecordNavigation::NodeNumberAt(int index) const
{
    return static_cast<qint16>(mForm.cmbNode->itemData(index).toInt());
}

} // namespace qor
