#include "rules/NodeSaving.h"
#include "editor/BusinessRules.h"
#include "editor/ShownNode.h"
#include "form/EditorForm.h"
#include "form/LongOperation.h"
#include "form/ModuleState.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/Screen.h"
#include "rules/DraftFiles.h"
#include "rules/NodeLoading.h"
#include "store/KELDARPlusFilesAndFolders.h"

#include <QFileInfo>

namespace qor {

namespace {

const QString saveProcedure = u"SaveChanges"_s;

/// Where the list is that the database may not hold.
QString KeptSentence(const NodeIdentity& identity)
{
    const QString draft = OwnDraftName(GetMiscFolder(), identity);
    if (!QFileInfo::exists(draft))
        return {};
    return u"\r\nYour list is kept in %1 and is offered when DIR %2 is opened again."_s.arg(draft).arg(identity.number);
}

bool AskToOverwrite(qint16 node, const QString& changes)
{
    return MsgBox(u"DIR %1 has been changed at another station.\r\n%2\r\nDo you want to overwrite these changes?"_s
                      .arg(node)
                      .arg(changes),
                  MsgBoxStyle::YesNo | MsgBoxStyle::Question, u"Confirmation"_s) == MsgBoxAnswer::Yes;
}

} // namespace

bool BusinessRules::MayOverwrite(EditorForm& form)
{
    return ReportErrors(saveProcedure, [&] {
        if (!mDataBase.Conn.IsShared())
            return true;
        std::optional<DirectoryNode> found;
        try {
            found = LoadNode(mDataBase, form.NodeShown(), form.HighestMessageNode());
        } catch (const RuntimeError& error) {
            throw RuntimeError(error.Number(), error.Description() + u"\r\nNothing was saved."_s, error.Source());
        }
        const QString changes = ChangesOfOthers(form.Known(), found, form.HighestMessageNode());
        if (!changes.isEmpty() && !AskToOverwrite(form.NodeNumber(), changes))
            return false;
        const bool isDeleted = !found;
        form.SetKnown({.stored = std::move(found), .attempted = {}, .isDeleted = isDeleted});
        return true;
    });
}

void BusinessRules::RequireRoomForSave() const
{
    qor::RequireRoomForSave(mDataBase, GetDatabaseFolder());
}

SaveOutcome BusinessRules::SaveChanges(EditorForm& form, qint16 nodeNumber)
{
    return ReportErrors(saveProcedure, [&] {
        const HourglassPointer hourglass;
        const LongOperation running(form);
        CheckForUnReferencedNodes(form); // the nodes that it creates wait for no save
        form.StatusBar1->SetPanelText(u"Saving node information. Please wait..."_s);
        const DirectoryNode node = NodeOn(form, nodeNumber);
        const KnownNode known = form.Known();
        form.SetKnown({.stored = known.stored, .attempted = node, .isDeleted = known.isDeleted});
        try {
            auto result = SaveNodeKeepingVersion(mDataBase, node, known, GetMiscFolder(), form.HighestMessageNode());
            if (result.isOvertaken) {
                form.SetKnown(known);
                return SaveOutcome::Overtaken;
            }
            if (result.stored)
                form.SetKnown({.stored = std::move(result.stored), .attempted = {}, .isDeleted = false});
        } catch (const RuntimeError& error) {
            throw RuntimeError(error.Number(), error.Description() + KeptSentence(node.identity), error.Source());
        }
        form.StatusBar1->SetPanelText(QString());
        Module().DirectoryChanged = false;
        return SaveOutcome::Ended;
    });
}

} // namespace qor
