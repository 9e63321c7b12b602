#include "service/frmDIR.h"

#include "form/ModuleState.h"
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

frmDIR::frmDIR() : mListEvents(*LVDirectory)
{
    ConnectEvents();
}

void frmDIR::ConnectEvents()
{
    OnEvent(LVDirectory, &ListView::ColumnClick, &mListEvents, &DirectoryListEvents::LVDirectory_ColumnClick);
    OnEvent(LVDirectory, &ListView::KeyPress, &mListEvents, &DirectoryListEvents::LVDirectory_KeyPress);
}

void frmDIR::Form_Load()
{
    mRules = std::make_unique<BusinessRules>();
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

void frmDIR::Form_Unload(bool& /*cancel*/)
{
    Module().OldListViewProc = SetWindowLongA(LVDirectory->Handle(), GWL_WNDPROC, Module().OldListViewProc);
}

} // namespace qor
