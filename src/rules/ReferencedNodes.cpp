#include "form/EditorForm.h"
#include "platform/runtime/DateText.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/runtime/Numbers.h"
#include "platform/ui/Screen.h"
#include "rules/BusinessRules.h"
#include "rules/ConfirmationDialog.h"

#include <cmath>
#include <QDateTime>

namespace qor {

namespace {

constexpr QLatin1String templateNode("0"); // new message nodes are copies of it

bool IsChecked(const ListBox& checked, const QString& prompt)
{
    return SendMessageA(checked.Handle(), LB_FINDSTRING, 0, reinterpret_cast<qintptr>(&prompt)) != LB_ERR;
}

/// "P01M005.wav": two digits of the partition and three of the node at least. A prompt that is no number
/// stands as it is.
QString WaveFileName(qint16 partition, const QString& prompt)
{
    const auto number = NumberFromText(prompt);
    const QString node = number ? QString::number(std::llround(*number)).rightJustified(3, u'0') : prompt;
    return u'P' + QString::number(partition).rightJustified(2, u'0') + u'M' + node + u".wav"_s;
}

QString NodeDescription(const ListView& list, int row)
{
    constexpr qsizetype highestLength = 31;
    const QString name =
        EntryText(list, row, DirectoryColumn::FirstName) + u' ' + EntryText(list, row, DirectoryColumn::LastName);
    return name.left(highestLength);
}

ConfirmationAnswer AskToCreate(IDispatch& dialog, const QString& prompt)
{
    const DefaultPointer pointer;
    const QString text =
        u"MSG %1 is referenced but it does not exist.\r\nDo you want to auto create node 'MSG %1'?"_s.arg(prompt);
    const QString title = u"Confirmation"_s;
    return static_cast<ConfirmationAnswer>(
        IntegerIn(CallByName(dialog, u"Ask"_s, {TextArgument(text), TextArgument(title)})));
}

bool StopsCheck(ConfirmationAnswer answer)
{
    return answer == ConfirmationAnswer::Stop || answer == ConfirmationAnswer::Closed;
}

bool CreatesNode(ConfirmationAnswer answer)
{
    return answer == ConfirmationAnswer::Yes || answer == ConfirmationAnswer::YesToAll;
}

} // namespace

void BusinessRules::CheckForUnReferencedNodes(EditorForm& form)
{
    ReportErrors(u"CheckForUnReferencedNodes"_s, [&] {
        form.StatusBar1->show();
        form.StatusBar1->SetPanelText(u"Checking for non-existing nodes. Please wait..."_s);
        const auto dialog = CreateObject(confirmationDialogId);
        ListBox& checked = *form.lstUniquePromptsForSaving;
        auto answer = ConfirmationAnswer::No;
        const int rowCount = form.LVDirectory->Items().RowCount();
        for (int row = 0; row < rowCount; ++row) {
            const QString prompt = EntryText(*form.LVDirectory, row, DirectoryColumn::Prompt);
            // The search finds beginnings: 1 counts as checked when 12 is.
            if (IsChecked(checked, prompt))
                continue;
            if (!IsNodeExisted(form, NODE_TYPE_MSG, prompt)) {
                if (answer != ConfirmationAnswer::YesToAll)
                    answer = AskToCreate(*dialog, prompt);
                if (StopsCheck(answer))
                    break;
                if (CreatesNode(answer))
                    CreateMessageNode(form, prompt, NodeDescription(*form.LVDirectory, row));
            }
            checked.AddItem(prompt);
        }
    });
}

/// Copies the template node. Where there is none nothing is inserted, and the status still says created.
void BusinessRules::CreateMessageNode(EditorForm& form, const QString& prompt, const QString& description)
{
    const QString config = QString::number(form.ConfigID());
    const QString partition = QString::number(form.PartitionID());
    mDataBase.Execute(CommandId::Duplicate_MSG_Node,
                      {prompt, WaveFileName(form.PartitionID(), prompt), description, config, partition, templateNode});
    mDataBase.Execute(CommandId::Duplicate_Node_In_General_Pool,
                      {prompt, description, GeneralDateText(QDateTime::currentDateTime()), config, partition,
                       templateNode, NODE_TYPE_MSG});
    form.StatusBar1->SetPanelText(u"MSG %1 is created."_s.arg(prompt));
}

} // namespace qor
