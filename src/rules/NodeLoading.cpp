#include "form/Directory.h"
#include "form/EditorForm.h"
#include "form/ModuleState.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/runtime/Numbers.h"
#include "platform/ui/MsgBox.h"
#include "platform/ui/Screen.h"
#include "rules/BusinessRules.h"

#include <QPushButton>

namespace qor {

namespace {

QString DecimalText(qint16 number)
{
    return QString::number(number);
}

/// The whole number in a field of any kind; nothing for Null, other texts and fractions.
std::optional<int> WholeNumber(const QVariant& value)
{
    bool ok = false;
    const int number = value.toString().trimmed().toInt(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

QString TextOr(const QVariant& value, const QString& missing)
{
    const QString text = value.toString();
    return text.isEmpty() ? missing : text;
}

/// Prompts outside 1 to 999 become 1, whatever the partition's maximum.
QString PromptText(const QVariant& value)
{
    constexpr int highestPrompt = 999;
    const int prompt = WholeNumber(value).value_or(0);
    return prompt >= 1 && prompt <= highestPrompt ? QString::number(prompt) : u"1"_s;
}

/// Reads the entries of a node; what is missing is replaced, so that every row can be shown.
std::vector<ListRow> ReadEntries(Recordset& entries)
{
    const int lastName = entries.FieldIndex(u"LastName"_s);
    const int firstName = entries.FieldIndex(u"FirstName"_s);
    const int extension = entries.FieldIndex(u"Extension"_s);
    const int namePrompt = entries.FieldIndex(u"NamePrompt"_s);
    const int password = entries.FieldIndex(u"Password"_s);
    const QString unknown = u"UNKNOWN"_s;
    const QString one = u"1"_s;

    std::vector<ListRow> rows;
    rows.reserve(static_cast<std::size_t>(entries.RecordCount()));
    for (; !entries.EndOfFile(); entries.MoveNext()) {
        const auto number = static_cast<int>(rows.size()) + 1;
        rows.push_back(
            EntryRow(number, {TextOr(entries.Field(lastName), unknown), TextOr(entries.Field(firstName), unknown),
                              TextOr(entries.Field(extension), one), PromptText(entries.Field(namePrompt)),
                              TextOr(entries.Field(password), one)}));
    }
    return rows;
}

void ShowHeader(EditorForm& form, const Recordset& node)
{
    form.txtDescription->setText(node.Field(u"NodeDescription"_s).toString());
    form.txtAccessCode->setText(node.Field(u"AccessCode"_s).toString());
    form.cmbUsePasswords->SetListIndex(WholeNumber(node.Field(u"UsePasswords"_s)) == 1 ? 0 : 1);
    const int prompt = WholeNumber(node.Field(u"StartingPromptNumber"_s)).value_or(0);
    const int highest = form.cmbMSGNodeNumber->ListCount();
    if (highest > 0)
        form.cmbMSGNodeNumber->SetListIndex(prompt >= 1 && prompt <= highest ? prompt - 1 : 0);
}

void ShowPosition(EditorForm& form)
{
    form.lblRecordPosition->setText(u"%1 of %2"_s.arg(form.cmbNode->ListIndex() + 1).arg(form.cmbNode->ListCount()));
    form.EnableNavigationButtons();
}

} // namespace

void BusinessRules::LoadExistingNodesInRecordSelector(EditorForm& form, qint16 nodeNumber)
{
    ReportErrors(u"LoadExistingNodesInRecordSelector"_s, [&] {
        Recordset nodes =
            mDataBase.Open(CommandId::Get_All_DIR_Nodes,
                           {DecimalText(form.ConfigID()), DecimalText(form.PartitionID()), NODE_TYPE_DIR});
        int selected = 0;
        for (; !nodes.EndOfFile(); nodes.MoveNext()) {
            const qint16 number =
                Int16FromField(nodes.Field(u"NodeNumber"_s), u"NodeNumber of a directory node"_s).value_or(0);
            if (!IsNewNode && number <= 0)
                continue;
            form.cmbNode->AddItem(u"DIR "_s + DecimalText(number), number);
            if (number == nodeNumber)
                selected = form.cmbNode->ListCount() - 1;
        }
        nodes.Close();
        if (form.cmbNode->ListCount() > 0)
            form.cmbNode->SetListIndex(selected);
        if (IsNewNode) {
            form.HideNavigation();
            form.CompactLayoutWithoutNavigation();
        }
    });
}

bool BusinessRules::LoadPromptMSGNodeNumber(EditorForm& form)
{
    return ReportErrors(u"LoadPromptMSGNodeNumber"_s, [&] {
        form.cmbPromptNumber->Clear();
        Recordset maxima =
            mDataBase.Open(CommandId::Get_Specific_Node_Type_Max,
                           {DecimalText(form.ConfigID()), DecimalText(form.PartitionID()), NODE_TYPE_MSG});
        const qint16 highest =
            maxima.EndOfFile()
                ? qint16{0}
                : Int16FromField(maxima.Field(u"Max_number"_s), u"Max_number of the message nodes"_s).value_or(0);
        maxima.Close();
        if (highest <= 0) {
            Module().PendingMessage =
                u"Please check the \"Max Number of each Node\" Section for MSG Node in Partition Settings."_s;
            return false;
        }
        form.cmbPromptNumber->SetNumbers(1, highest);
        form.cmbMSGNodeNumber->SetNumbers(1, highest);
        form.cmbMSGNodeNumber->SetListIndex(0);
        return true;
    });
}

bool BusinessRules::LoadData(EditorForm& form, qint16 nodeNumber)
{
    return ReportErrors(u"LoadData"_s, [&] {
        std::optional<HourglassPointer> hourglass(std::in_place);
        const QString config = DecimalText(form.ConfigID());
        const QString partition = DecimalText(form.PartitionID());
        const QString number = DecimalText(nodeNumber);
        const Recordset node = mDataBase.Open(CommandId::Get_DIR_Node, {config, partition, number, NODE_TYPE_DIR});
        if (node.EndOfFile()) {
            hourglass.reset();
            MsgBox(u"DIR %1 doesn't exist."_s.arg(number), MsgBoxStyle::Information, u"Information"_s);
            return false;
        }
        ShowHeader(form, node);
        ListItems& items = form.LVDirectory->Items();
        items.Clear();
        Recordset entries = mDataBase.Open(CommandId::Get_DIR_DetailsNode, {config, partition, number});
        items.Append(ReadEntries(entries));
        ShowPosition(form);
        return true;
    });
}

} // namespace qor
