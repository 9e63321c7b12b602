#include "rules/NodeLoading.h"
#include "editor/BusinessRules.h"
#include "editor/ShownNode.h"
#include "form/EditorForm.h"
#include "form/LockWait.h"
#include "form/ModuleState.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/Screen.h"

#include <QScopeGuard>

namespace qor {

namespace {

/// Only a new node's editor lists the node that it is for, number 0, and those below.
void FillRecordSelector(EditorForm& form, const std::vector<qint16>& numbers, bool isNewNode, qint16 shown)
{
    int selected = 0;
    for (const qint16 number : numbers) {
        if (!isNewNode && number <= 0)
            continue;
        form.cmbNode->AddItem(u"DIR "_s + QString::number(number), number);
        if (number == shown)
            selected = form.cmbNode->ListCount() - 1;
    }
    if (form.cmbNode->ListCount() > 0)
        form.cmbNode->FillListIndex(selected);
}

/// What keeps the connection from being opened, when that is a lock.
std::optional<RuntimeError> LockOn(Connection& connection, int timeout)
{
    try {
        connection.SetLockTimeout(timeout);
        connection.Open();
    } catch (const RuntimeError& error) {
        if (error.Number() == ErrorNumber::DatabaseLocked)
            return error;
        if (connection.IsShared()) // where each loader would wait for the server again, and report the same
            throw;
    }
    return std::nullopt;
}

void RequireUsable(const DirectoryNodeNumbers& nodes)
{
    if (nodes.unusable.isEmpty())
        return;
    throw RuntimeError(ErrorNumber::Overflow,
                       u"The number of a directory node must be a whole one from -32768 to 32767; left out: %1. "
                       "Correct NodeNumber in Node_DIR."_s.arg(nodes.unusable.join(u", "_s)));
}

void ShowPosition(EditorForm& form)
{
    form.ShowPosition(u"%1 of %2"_s.arg(form.cmbNode->ListIndex() + 1).arg(form.cmbNode->ListCount()));
    form.EnableNavigationButtons();
}

} // namespace

bool BusinessRules::WaitForDatabase()
{
    return ReportErrors(u"LoadExistingNodesInRecordSelector"_s, [this] {
        constexpr int patience = 30'000; // ms
        std::optional<RuntimeError> lock;
        const auto tryFor = [&](int milliseconds) {
            lock = LockOn(mDataBase.Conn, milliseconds);
            return !lock;
        };
        const WaitOutcome outcome =
            WaitFor(tryFor, u"The database is locked by another program. Waiting until it is free."_s, patience);
        mDataBase.Conn.SetLockTimeout(patience);
        if (outcome == WaitOutcome::TimedOut)
            throw RuntimeError(*lock);
        return outcome == WaitOutcome::Succeeded;
    });
}

void BusinessRules::LoadExistingNodesInRecordSelector(EditorForm& form, qint16 nodeNumber)
{
    ReportErrors(u"LoadExistingNodesInRecordSelector"_s, [&] {
        const DirectoryNodeNumbers nodes = FindDirectoryNodes(mDataBase, form.PartitionShown());
        FillRecordSelector(form, nodes.numbers, IsNewNode, nodeNumber);
        if (IsNewNode) {
            form.HideNavigation();
            form.CompactLayoutWithoutNavigation();
        }
        RequireUsable(nodes);
    });
}

bool BusinessRules::LoadPromptMSGNodeNumber(EditorForm& form)
{
    return ReportErrors(u"LoadPromptMSGNodeNumber"_s, [&] {
        const auto highest = HighestMessageNode(mDataBase, form.PartitionShown());
        form.SetHighestMessageNode(highest.value_or(0));
        if (highest)
            return true;
        Module().PendingMessage =
            u"Please check the \"Max Number of each Node\" Section for MSG Node in Partition Settings."_s;
        return false;
    });
}

bool BusinessRules::LoadData(EditorForm& form, qint16 nodeNumber)
{
    return ReportErrors(u"LoadData"_s, [&] {
        if (ShowStoredNode(form, nodeNumber))
            return true;
        MsgBox(u"DIR %1 doesn't exist."_s.arg(nodeNumber), MsgBoxStyle::Information, u"Information"_s);
        return false;
    });
}

/// What the form showed before goes whatever happens: under the new number it would be saved as that node.
bool BusinessRules::ShowStoredNode(EditorForm& form, qint16 nodeNumber)
{
    const HourglassPointer hourglass;
    auto showNone = qScopeGuard([&form] {
        ShowNoNode(form);
        ShowPosition(form);
    });
    auto node = LoadNode(mDataBase, {form.PartitionShown(), nodeNumber}, form.HighestMessageNode());
    if (!node)
        return false;
    showNone.dismiss();
    ShowNode(form, std::move(*node));
    ShowPosition(form);
    return true;
}

} // namespace qor
