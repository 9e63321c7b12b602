#include "editor/Commit.h"

#include "editor/BusinessRules.h"
#include "editor/Drafts.h"
#include "editor/EntryCommands.h"
#include "editor/HeaderFields.h"
#include "editor/LabelCheck.h"
#include "form/EditorForm.h"
#include "form/LongOperation.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/MsgBox.h"
#include "rules/Validation.h"

namespace qor {

namespace {

/// Whether a list box has the text; it has it from now on.
bool Meet(ListBox& list, const QString& text)
{
    if (list.FindExact(text) >= 0)
        return true;
    list.AddItem(text);
    return false;
}

} // namespace

Commit::Commit(EditorForm& form, BusinessRules& rules, EntryCommands& entryCommands, Drafts& drafts)
    : mForm(form), mRules(rules), mEntryCommands(entryCommands), mDrafts(drafts)
{
}

void Commit::cmdApply_Click()
{
    ReportErrors(u"cmdApply_Click"_s, [&] { RunSequence(); });
}

void Commit::cmdOK_Click()
{
    ReportErrors(u"cmdOK_Click"_s, [&] {
        mEntryCommands.LeaveEditMode();
        if (mForm.cmdApply->isEnabled())
            cmdApply_Click();
        if (!mForm.cmdApply->isEnabled())
            mForm.Unload();
    });
}

void Commit::cmdCancel_Click()
{
    ReportErrors(u"cmdCancel_Click"_s, [&] {
        mEntryCommands.LeaveEditMode();
        if (AskToSaveChanges() == MsgBoxAnswer::Cancel)
            return;
        mForm.MarkUnchanged();
        mForm.Unload();
    });
}

MsgBoxAnswer Commit::AskToSaveChanges()
{
    mEntryCommands.LeaveEditMode();
    if (!mForm.cmdApply->isEnabled())
        return MsgBoxAnswer::No;
    const MsgBoxAnswer answer =
        MsgBox(u"Do you want to save changes?"_s, MsgBoxStyle::YesNoCancel | MsgBoxStyle::Question, u"Confirmation"_s);
    if (answer == MsgBoxAnswer::No)
        mDrafts.Drop();
    if (answer != MsgBoxAnswer::Yes)
        return answer;
    const Outcome outcome = RunSequence();
    if (outcome == Outcome::LabelRefused)
        mForm.txtDescription->setFocus();
    return outcome == Outcome::Saved ? MsgBoxAnswer::Yes : MsgBoxAnswer::Cancel;
}

/// A save that failed and was reported counts as saved: it cannot be told from one that went well.
Commit::Outcome Commit::RunSequence()
{
    mEntryCommands.LeaveEditMode();
    if (CheckAccessCode(mForm) != u"OK"_s)
        return Outcome::AccessCodeRefused;
    if (!DirectoryMayBeSaved())
        return Outcome::DirectoryRefused;
    if (!LabelMayBeSaved())
        return Outcome::LabelRefused;
    do {
        if (!mRules.MayOverwrite(mForm))
            return Outcome::OverwritingRefused;
        if (!mDrafts.KeepForSave())
            mRules.RequireRoomForSave();
    } while (mRules.SaveChanges(mForm, mForm.NodeNumber()) == SaveOutcome::Overtaken);
    mForm.MarkUnchanged();
    mDrafts.DropIfSaved();
    return Outcome::Saved;
}

bool Commit::DirectoryMayBeSaved()
{
    const auto fault = CheckDirectoryData();
    if (!fault)
        return true;
    if (fault->invalidEntry) {
        MsgBox(u"Invalid Entry. Please update the directory."_s, MsgBoxStyle::Information, u"Information"_s);
    } else if (MsgBox(u"Duplicate prompts in Directory. Continue saving?"_s, MsgBoxStyle::YesNo | MsgBoxStyle::Question,
                      u"Confirmation"_s) == MsgBoxAnswer::Yes) {
        return true;
    }
    ShowRow(fault->rowKey);
    return false;
}

std::optional<DirectoryFault> Commit::CheckDirectoryData()
{
    const LongOperation running(mForm);
    mForm.StatusBar1->SetPanelText(u"Checking Data. Please wait..."_s);
    mForm.lstPrompts->Clear();
    const ListView& list = *mForm.LVDirectory;
    const auto fault =
        FindFault(EntriesOf(list), [this](const QString& prompt) { return Meet(*mForm.lstPrompts, prompt); });
    mForm.StatusBar1->SetPanelText(QString());
    if (!fault)
        return std::nullopt;
    return DirectoryFault{fault->isInvalid, list.Items().Key(static_cast<int>(fault->row))};
}

bool Commit::LabelMayBeSaved()
{
    const QString label = mForm.txtDescription->text();
    const auto labelCheck = CreateObject(labelCheckId);
    if (BooleanIn(CallByName(*labelCheck, u"ValidateText"_s, {TextArgument(label)})))
        return true;
    MsgBox(u"Double quotes and continuous single quotes are not allowed in the Label field"_s, MsgBoxStyle::Information,
           u"Information"_s);
    return false;
}

void Commit::ShowRow(const QString& rowKey)
{
    ListView& list = *mForm.LVDirectory;
    ClearSelectionFrom(list, 0);
    const int row = list.Items().RowOfKey(rowKey);
    if (row >= 0) {
        list.SetSelected(row, true);
        list.EnsureVisible(row);
    }
    list.setFocus();
}

} // namespace qor
