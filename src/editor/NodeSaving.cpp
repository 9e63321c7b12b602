#include "rules/NodeSaving.h"
#include "editor/BusinessRules.h"
#include "editor/ShownNode.h"
#include "form/EditorForm.h"
#include "form/LongOperation.h"
#include "form/ModuleState.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/Screen.h"

namespace qor {

void BusinessRules::SaveChanges(EditorForm& form, qint16 nodeNumber)
{
    ReportErrors(u"SaveChanges"_s, [&] {
        const HourglassPointer hourglass;
        const LongOperation running(form);
        CheckForUnReferencedNodes(form); // the nodes that it creates wait for no save
        form.StatusBar1->SetPanelText(u"Saving node information. Please wait..."_s);
        SaveNode(mDataBase, NodeOn(form, nodeNumber));
        form.StatusBar1->SetPanelText(QString());
        Module().DirectoryChanged = false;
    });
}

} // namespace qor
