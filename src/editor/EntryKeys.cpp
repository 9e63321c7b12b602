#include "editor/EntryKeys.h"

#include "editor/DirectoryListEvents.h"
#include "editor/EntryCommands.h"
#include "editor/History.h"
#include "form/EditorForm.h"
#include "platform/runtime/ErrorReport.h"

namespace qor {

EntryKeys::EntryKeys(EditorForm& form, EntryCommands& commands, DirectoryListEvents& listEvents, History& history)
    : mForm(form), mCommands(commands), mListEvents(listEvents), mHistory(history), LVDirectory(*form.LVDirectory)
{
}

void EntryKeys::WalkFields(int distance)
{
    ReportErrors(u"WalkFields"_s, [&] {
        QWidget* field = mForm.focusWidget();
        const int row = LVDirectory.SelectedItem() + distance;
        if (!field || !mForm.EntryEditorsShown() || row < 0 || row >= LVDirectory.Items().RowCount())
            return;
        LVDirectory.SetSelected(row, true);
        mListEvents.LVDirectory_ItemClick(row);
        field->setFocus();
        if (auto* text =
                field == mForm.cmbPromptNumber ? mForm.cmbPromptNumber->lineEdit() : qobject_cast<QLineEdit*>(field))
            text->selectAll();
    });
}

void EntryKeys::AddAndEdit()
{
    ReportErrors(u"AddAndEdit"_s, [&] {
        const bool wasEditing = mForm.InEditMode();
        const int rowCount = LVDirectory.Items().RowCount();
        mCommands.LeaveEditMode();
        mCommands.cmdDirAdd_Click();
        if (wasEditing || LVDirectory.Items().RowCount() > rowCount)
            mCommands.cmdDirEdit_Click();
    });
}

void EntryKeys::Undo()
{
    ReportErrors(u"Undo"_s, [&] {
        if (!mHistory.CanUndo())
            return;
        mCommands.LeaveEditMode();
        mHistory.Undo();
    });
}

void EntryKeys::Redo()
{
    ReportErrors(u"Redo"_s, [&] {
        if (!mHistory.CanRedo())
            return;
        mCommands.LeaveEditMode();
        mHistory.Redo();
    });
}

} // namespace qor
