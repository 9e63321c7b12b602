#include "service/frmDIR.h"

#include "form/ModuleState.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/Events.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/Screen.h"
#include "service/ListViewHook.h"

#include <utility>

namespace qor {

namespace {

constexpr int statusPanelMarginTwips = 100;
constexpr qint16 colouredSubItems = 4; // LastName, FirstName, Extension, Prompt

} // namespace

frmDIR::Handlers::Handlers(EditorForm& form)
    : history(form),
      listEvents(form, history),
      entryCommands(form, rules, listEvents, history),
      entryKeys(form, entryCommands, listEvents, history),
      findEntries(form, listEvents),
      entryFields(form),
      headerFields(form),
      drafts(form, history),
      versions(form, entryCommands, history),
      commit(form, rules, entryCommands, drafts),
      navigation(form, rules, entryCommands, commit, history, drafts),
      directoryImport(form, rules, entryCommands, history),
      directoryExport(form),
      clipboard(form, rules, entryCommands, history)
{
}

/// Hides first, so that the events which that raises find their handlers.
frmDIR::~frmDIR()
{
    hide();
}

void frmDIR::ConnectEvents()
{
    ConnectList();
    ConnectEntryCommands();
    ConnectEntryFields();
    ConnectHeaderFields();
    ConnectCommit();
    ConnectNavigation();
    ConnectInterchange();
    ConnectActions();
}

void frmDIR::ConnectList()
{
    auto* events = &mHandlers->listEvents;
    OnEvent(LVDirectory, &ListView::ItemClick, events, &DirectoryListEvents::LVDirectory_ItemClick);
    OnEvent(LVDirectory, &ListView::MouseUp, events, &DirectoryListEvents::LVDirectory_MouseUp);
    OnEvent(LVDirectory, &ListView::HorizontalScroll, events, &DirectoryListEvents::LVDirectory_HorizontalScroll);
    OnEvent(LVDirectory, &ListView::Resized, events, &DirectoryListEvents::LVDirectory_Resized);
    OnEvent(LVDirectory, &ListView::ColumnClick, events, &DirectoryListEvents::LVDirectory_ColumnClick);
    OnEvent(LVDirectory, &ListView::KeyPress, events, &DirectoryListEvents::LVDirectory_KeyPress);
    OnEvent(LVDirectory, &ListView::KeyDown, &mHandlers->entryCommands, &EntryCommands::LVDirectory_KeyDown);
}

void frmDIR::ConnectEntryCommands()
{
    auto* commands = &mHandlers->entryCommands;
    OnEvent(cmdDirAdd, &QPushButton::clicked, commands, &EntryCommands::cmdDirAdd_Click);
    OnEvent(cmdDirInsert, &QPushButton::clicked, commands, &EntryCommands::cmdDirInsert_Click);
    OnEvent(cmdDirRemove, &QPushButton::clicked, commands, &EntryCommands::cmdDirRemove_Click);
    OnEvent(cmdDirEdit, &QPushButton::clicked, commands, &EntryCommands::cmdDirEdit_Click);
    OnEvent(cmdDirUp, &QPushButton::clicked, commands, &EntryCommands::cmdDirUp_Click);
    OnEvent(cmdDirDown, &QPushButton::clicked, commands, &EntryCommands::cmdDirDown_Click);
}

void frmDIR::ConnectEntryFields()
{
    auto* fields = &mHandlers->entryFields;
    for (const EntryEditor& editor : EntryEditors()) {
        if (TextBox* box = editor.Text()) {
            OnEvent(box, &TextBox::Change, fields, &EntryFields::Change, editor);
            OnEvent(box, &TextBox::GotFocus, box, &QLineEdit::selectAll);
            OnEvent(box, &TextBox::LostFocus, fields, &EntryFields::LostFocus, editor);
        }
    }
    OnEvent(cmbPromptNumber, &ComboBox::Change, fields, &EntryFields::cmbPromptNumber_Change);
    OnEvent(cmbPromptNumber, &ComboBox::Click, fields, &EntryFields::cmbPromptNumber_Click);
}

void frmDIR::ConnectHeaderFields()
{
    auto* header = &mHandlers->headerFields;
    OnEvent(txtDescription, &TextBox::Change, header, &HeaderFields::txtDescription_Change);
    OnEvent(cmbUsePasswords, &ComboBox::Click, header, &HeaderFields::cmbUsePasswords_Click);
    OnEvent(txtAccessCode, &TextBox::Change, header, &HeaderFields::txtAccessCode_Change);
    OnEvent(cmbMSGNodeNumber, &ComboBox::Change, header, &HeaderFields::cmbMSGNodeNumber_Change);
    OnEvent(cmbMSGNodeNumber, &ComboBox::Click, header, &HeaderFields::cmbMSGNodeNumber_Click);
    for (TextBox* field : {txtDescription, txtAccessCode, qobject_cast<TextBox*>(cmbMSGNodeNumber->lineEdit())})
        OnEvent(field, &TextBox::LostFocus, &mHandlers->drafts, &Drafts::Keep);
}

void frmDIR::ConnectCommit()
{
    auto* commit = &mHandlers->commit;
    OnEvent(cmdApply, &QPushButton::clicked, commit, &Commit::cmdApply_Click);
    OnEvent(cmdOK, &QPushButton::clicked, commit, &Commit::cmdOK_Click);
    OnEvent(cmdCancel, &QPushButton::clicked, commit, &Commit::cmdCancel_Click);
}

void frmDIR::ConnectNavigation()
{
    auto* navigation = &mHandlers->navigation;
    OnEvent(cmdFirst, &QPushButton::clicked, navigation, &RecordNavigation::cmdFirst_Click);
    OnEvent(cmdPrevious, &QPushButton::clicked, navigation, &RecordNavigation::cmdPrevious_Click);
    OnEvent(cmbNode, &ComboBox::Click, navigation, &RecordNavigation::cmbNode_Click);
    OnEvent(cmdNext, &QPushButton::clicked, navigation, &RecordNavigation::cmdNext_Click);
    OnEvent(cmdLast, &QPushButton::clicked, navigation, &RecordNavigation::cmdLast_Click);
}

void frmDIR::ConnectInterchange()
{
    OnEvent(cmdOpenCSVFilename, &QPushButton::clicked, &mHandlers->directoryImport,
            &DirectoryImport::cmdOpenCSVFilename_Click);
    OnEvent(cmdDirSaveList, &QPushButton::clicked, &mHandlers->directoryExport, &DirectoryExport::cmdDirSaveList_Click);
}

void frmDIR::Form_Load()
{
    mHandlers = std::make_unique<Handlers>(*this);
    ConnectEvents();
    StatusBar1->SetPanelWidth(width() - TwipsToPixels(statusPanelMarginTwips));
    Module().LoadedForm = this;
    Module().OldListViewProc = SetWindowLongA(LVDirectory->Handle(), GWL_WNDPROC, ListViewWindowProc);
    Module().DirectoryChanged = false;
    lblUsePasswords->hide();
    cmbUsePasswords->hide();
    Module().DirectorySubItemCount = colouredSubItems;
}

void frmDIR::Form_Activate()
{
    // Taken first: closing the box activates the form again.
    const QString message = std::exchange(Module().PendingMessage, {});
    if (!message.isEmpty())
        MsgBox(message, MsgBoxStyle::Information, u"Information"_s);
}

void frmDIR::Form_Shown()
{
    mHandlers->drafts.Offer();
}

void frmDIR::Form_Unload(bool& cancel)
{
    if (mHandlers->commit.AskToSaveChanges() == MsgBoxAnswer::Cancel) {
        cancel = true;
        return;
    }
    MarkUnchanged(); // so that a field which loses the focus with the form keeps no draft any more
    Module().OldListViewProc = SetWindowLongA(LVDirectory->Handle(), GWL_WNDPROC, Module().OldListViewProc);
}

} // namespace qor
