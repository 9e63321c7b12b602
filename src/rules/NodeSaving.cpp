#include "form/BusyForm.h"
#include "form/EditorForm.h"
#include "form/ModuleState.h"
#include "platform/data/DeferredSync.h"
#include "platform/runtime/DateText.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/ui/Screen.h"
#include "rules/BusinessRules.h"

#include <QDateTime>

namespace qor {

/// Every command commits by itself, so that a failure leaves what ran before it; no transaction holds them
/// together.
void BusinessRules::SaveChanges(EditorForm& form, qint16 nodeNumber)
{
    ReportErrors(u"SaveChanges"_s, [&] {
        const HourglassPointer hourglass;
        const BusyForm busy(form);
        CheckForUnReferencedNodes(form); // the nodes that it creates wait for no save
        DeferredSync sync(mDataBase.Conn);
        form.StatusBar1->SetPanelText(u"Saving node information. Please wait..."_s);
        const NodeIdentity node{QString::number(form.ConfigID()), QString::number(form.PartitionID()),
                                QString::number(nodeNumber)};
        mDataBase.Execute(CommandId::Delete_DIR_DetailsNode, {node.config, node.partition, node.number});
        SaveHeader(form, node);
        SaveEntries(form, node);
        sync.Finish();
        form.StatusBar1->SetPanelText(QString());
        Module().DirectoryChanged = false;
    });
}

void BusinessRules::SaveHeader(EditorForm& form, const NodeIdentity& node)
{
    const QString description = form.txtDescription->text();
    const QString usePasswords = form.cmbUsePasswords->ListIndex() == 0 ? u"1"_s : u"0"_s;
    mDataBase.Execute(CommandId::Update_DIR_Node,
                      {description, usePasswords, form.txtAccessCode->text(), form.cmbMSGNodeNumber->Text(),
                       node.config, node.partition, node.number});
    mDataBase.Execute(CommandId::Update_Node_General_Pool, {description, GeneralDateText(QDateTime::currentDateTime()),
                                                            node.config, node.partition, NODE_TYPE_DIR, node.number});
}

void BusinessRules::SaveEntries(EditorForm& form, const NodeIdentity& node)
{
    const ListView& list = *form.LVDirectory;
    const int rowCount = list.Items().RowCount();
    for (int row = 0; row < rowCount; ++row) {
        mDataBase.Execute(CommandId::Add_Detail_DIR, {node.config, node.partition, QString::number(row + 1),
                                                      node.number, EntryText(list, row, DirectoryColumn::FirstName),
                                                      EntryText(list, row, DirectoryColumn::LastName),
                                                      EntryText(list, row, DirectoryColumn::Extension),
                                                      EntryText(list, row, DirectoryColumn::Prompt),
                                                      EntryText(list, row, DirectoryColumn::Password)});
    }
}

} // namespace qor
