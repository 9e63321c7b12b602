#include "rules/MessageNodes.h"
#include "editor/BusinessRules.h"
#include "editor/TakenPrompts.h"
#include "form/ConfirmationDialog.h"
#include "form/EditorForm.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/Screen.h"

#include <algorithm>
#include <utility>

namespace qor {

namespace {

const QString nextNumberProcedure = u"GetNextAvailableMSGNODENUMBER"_s;

/// Prompts whose beginning is in a list box count as being in it: 1 is there when 12 is.
PromptSet BeginningsIn(ListBox& list)
{
    return {.contains = [&list](const QString& prompt) { return list.Find(prompt) >= 0; },
            .add = [&list](const QString& prompt) { list.AddItem(prompt); }};
}

/// The dialog about missing message nodes, made when there is a first question.
class ConfirmationQuestion
{
public:
    ConfirmationAnswer Ask(const QString& prompt)
    {
        const DefaultPointer pointer;
        if (!mDialog)
            mDialog.emplace(CreateObject(confirmationDialogId));
        const QString text =
            u"MSG %1 is referenced but it does not exist.\r\nDo you want to auto create node 'MSG %1'?"_s.arg(prompt);
        const QString title = u"Confirmation"_s;
        return static_cast<ConfirmationAnswer>(
            IntegerIn(CallByName(**mDialog, u"Ask"_s, {TextArgument(text), TextArgument(title)})));
    }

private:
    std::optional<ComReference<IDispatch>> mDialog;
};

} // namespace

qint16 BusinessRules::GetNextAvailableMSGNODENUMBER(EditorForm& form, bool reset, const MessageNodeNumbers* used)
{
    if (reset) {
        mPromptNumbers.Restart();
        return 0;
    }
    if (form.HighestMessageNode() == 0)
        return 0;
    const auto read = used ? std::nullopt : ReadUsedNumbers(form);
    if (!used && !read)
        return 0;
    return NextPrompt(form, used ? *used : *read);
}

qint16 BusinessRules::NextPrompt(EditorForm& form, const MessageNodeNumbers& used)
{
    const qint16 number = mPromptNumbers.Next(form.cmbMSGNodeNumber->Text(), form.HighestMessageNode(), used);
    if (number > 0)
        mGivenPrompts.insert(QString::number(number));
    return number;
}

bool BusinessRules::IsNewHere(const EditorForm& form, const QString& prompt) const
{
    const auto& stored = form.Known().stored;
    return mGivenPrompts.contains(prompt) &&
           !(stored && std::ranges::find(stored->entries, prompt, &DirectoryEntry::prompt) != stored->entries.end());
}

std::optional<MessageNodeNumbers> BusinessRules::ReadUsedNumbers(EditorForm& form)
{
    return ReportErrors(nextNumberProcedure,
                        [&] { return std::optional(UsedMessageNodeNumbers(mDataBase, form.PartitionShown())); });
}

QString NewRowPrompts::Next()
{
    if (!std::exchange(mHaveRead, true)) {
        mUsed = mRules.ReadUsedNumbers(mForm);
        if (mUsed && mForm.LVDirectory->Items().RowCount() == 0)
            mRules.GetNextAvailableMSGNODENUMBER(mForm, true);
    }
    if (!mUsed)
        return NewEntryPrompt(0);
    return NewEntryPrompt(mRules.GetNextAvailableMSGNODENUMBER(mForm, false, &*mUsed));
}

void BusinessRules::CheckForUnReferencedNodes(EditorForm& form)
{
    ReportErrors(u"CheckForUnReferencedNodes"_s, [&] {
        form.StatusBar1->show();
        form.StatusBar1->SetPanelText(u"Checking for non-existing nodes. Please wait..."_s);
        const auto usedNumbers = [&] { return UsedMessageNodeNumbers(mDataBase, form.PartitionShown()); };
        TakenPrompts taken(
            form, [&](const QString& prompt) { return IsNewHere(form, prompt); },
            [&] { return NextPrompt(form, usedNumbers()); });
        if (mDataBase.Conn.IsShared())
            taken.ReplaceAll(usedNumbers());
        ConfirmationQuestion question;
        MakeMissingMessageNodes(mDataBase, form.PartitionShown(), EntriesOf(*form.LVDirectory),
                                {.checked = BeginningsIn(*form.lstUniquePromptsForSaving),
                                 .ask = [&](const QString& prompt) { return question.Ask(prompt); },
                                 .made =
                                     [&](const QString& prompt) {
                                         form.StatusBar1->SetPanelText(u"MSG %1 is created."_s.arg(prompt));
                                         mGivenPrompts.remove(prompt);
                                     },
                                 .taken = [&](std::size_t row) { return taken.Replace(static_cast<int>(row)); }});
    });
}

} // namespace qor
