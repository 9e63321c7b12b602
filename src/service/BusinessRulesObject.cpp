#include "service/BusinessRulesObject.h"

#include "editor/LabelCheck.h"
#include "form/ConfirmationDialog.h"
#include "form/DirectoryRows.h"
#include "form/ModuleState.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/runtime/StandardError.h"
#include "platform/ui/Application.h"
#include "platform/ui/HostProcess.h"
#include "platform/ui/MsgBox.h"
#include "service/frmDIR.h"

#include <array>

namespace qor {

namespace {

constexpr DISPID showNodeEditorId = 1;
constexpr std::array members{DispatchMember{showNodeEditorId, QLatin1String("ShowNodeEditor"), 3}};

std::atomic<bool> editorOpen = false;

void TellHost(const QString& sentence)
{
    Tell(u"the editor cannot be shown: %1."_s.arg(sentence));
}

/// Holds the place of the one open editor, if it is free.
class OpenEditor
{
public:
    OpenEditor() : mTaken(!editorOpen.exchange(true)) {}
    ~OpenEditor()
    {
        if (mTaken)
            editorOpen = false;
    }
    OpenEditor(const OpenEditor&) = delete;
    OpenEditor& operator=(const OpenEditor&) = delete;

    bool Taken() const { return mTaken; }

private:
    bool mTaken;
};

} // namespace

BusinessRulesObject::BusinessRulesObject() : DispatchObject(IID__BusinessRules, members) {}

HRESULT BusinessRulesObject::ShowNodeEditor(std::int16_t configId, std::int16_t partitionId, std::int16_t nodeNumber,
                                            VARIANT_BOOL* result)
{
    if (result)
        *result = VARIANT_FALSE;
    const StandardFilesGuard standardFiles;
    try {
        const OpenEditor open;
        if (!open.Taken())
            TellHost(u"an editor is open already; close it first"_s);
        else if (const auto problem = EnsureApplication())
            TellHost(*problem);
        else
            RunEditor(configId, partitionId, nodeNumber);
    } catch (...) {
        TellHost(CurrentRuntimeError().Description());
    }
    return S_OK;
}

bool BusinessRulesObject::LoadInto(EditorForm& form, std::int16_t nodeNumber)
{
    if (!mRules.WaitForDatabase())
        return false;
    mRules.LoadExistingNodesInRecordSelector(form, nodeNumber);
    return mRules.LoadPromptMSGNodeNumber(form) && mRules.LoadData(form, nodeNumber);
}

/// A form lives for one call: whatever state a failure left it in, the next call starts from a fresh one.
void BusinessRulesObject::RunEditor(std::int16_t configId, std::int16_t partitionId, std::int16_t nodeNumber)
{
    InstallErrorBox();
    AddBuiltInClass(labelCheckId, MakeLabelCheck);
    AddBuiltInClass(confirmationDialogId, MakeConfirmationDialog);
    std::unique_ptr<frmDIR> form;
    ReportErrors(u"ShowNodeEditor"_s, [&] {
        mRules.IsNewNode = nodeNumber == 0;
        form = std::make_unique<frmDIR>();
        form->Load();
        form->SetConfigID(configId);
        form->SetPartitionID(partitionId);
        form->SetNodeNumber(nodeNumber);
        ResetDirectoryListView(*form->LVDirectory);
        form->HideEntryEditors();
        form->Load(); // does something only if one of the steps above has unloaded the form
        Module().PendingMessage.clear();
        const bool show = LoadInto(*form, nodeNumber);
        form->MarkUnchanged();
        if (!show) {
            form->Unload();
            return;
        }
        form->FocusFirstControl();
        form->ShowModal();
        if (form->IsLoaded())
            TellHost(u"the host has ended its event loop"_s);
    });
}

HRESULT BusinessRulesObject::Call(DISPID /*member*/, const DISPPARAMS& arguments, VARIANT* result,
                                  std::uint32_t* badArgument)
{
    std::array<std::int16_t, 3> numbers{};
    for (std::uint32_t i = 0; i < numbers.size(); ++i) {
        if (const HRESULT problem = Int16Argument(arguments, i, numbers[i], badArgument); problem != S_OK)
            return problem;
    }
    VARIANT_BOOL answer = VARIANT_FALSE;
    const HRESULT outcome = ShowNodeEditor(numbers[0], numbers[1], numbers[2], &answer);
    if (result) {
        *result = {};
        result->vt = VT_BOOL;
        result->boolVal = answer;
    }
    return outcome;
}

} // namespace qor
