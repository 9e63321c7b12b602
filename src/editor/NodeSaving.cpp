#include "rules/NodeSaving.h"
#include "editor/BusinessRules.h"
#include "editor/ShownNode.h"
#include "form/EditorForm.h"
#include "form/LongOperation.h"
#include "form/ModuleState.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/Screen.h"
#include "rules/DraftFiles.h"
#include "store/KELDARPlusFilesAndFolders.h"

#include <QFileInfo>

namespace qor {

namespace {

/// Where the list is that the database may not hold.
QString KeptSentence(const NodeIdentity& identity)
{
    const QString draft = OwnDraftName(GetMiscFolder(), identity);
    if (!QFileInfo::exists(draft))
        return {};
    return u"\r\nYour list is kept in %1 and is offered when DIR %2 is opened again."_s.arg(draft).arg(identity.number);
}

} // namespace

void BusinessRules::SaveChanges(EditorForm& form, qint16 nodeNumber)
{
    ReportErrors(u"SaveChanges"_s, [&] {
        const HourglassPointer hourglass;
        const LongOperation running(form);
        CheckForUnReferencedNodes(form); // the nodes that it creates wait for no save
        form.StatusBar1->SetPanelText(u"Saving node information. Please wait..."_s);
        form.SetStored({});
        const DirectoryNode node = NodeOn(form, nodeNumber);
        try {
            form.SetStored(SaveNodeKeepingVersion(mDataBase, node, GetMiscFolder(), form.HighestMessageNode()));
        } catch (const RuntimeError& error) {
            throw RuntimeError(error.Number(), error.Description() + KeptSentence(node.identity), error.Source());
        }
        form.StatusBar1->SetPanelText(QString());
        Module().DirectoryChanged = false;
    });
}

} // namespace qor
