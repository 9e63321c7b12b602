#include "form/EditorForm.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/runtime/Numbers.h"
#include "rules/BusinessRules.h"

#include <algorithm>
#include <array>

namespace qor {

namespace {

const QString nextNumberProcedure = u"GetNextAvailableMSGNODENUMBER"_s;

/// The first of the numbers first..last that no message node has, or 0. The numbers in use come sorted, so
/// one walk over them finds it.
int FirstFreeNumber(const MessageNodeNumbers& used, int first, int last)
{
    int candidate = first;
    for (auto number = std::lower_bound(used.begin(), used.end(), first); number != used.end(); ++number) {
        if (*number > candidate)
            break;
        candidate = *number + 1;
    }
    return candidate <= last ? candidate : 0;
}

} // namespace

qint16 BusinessRules::GetNextAvailableMSGNODENUMBER(EditorForm& form, bool reset, const MessageNodeNumbers* used)
{
    return ReportErrors(nextNumberProcedure, [&]() -> qint16 {
        if (reset) {
            mLastMSGNodeNumber = 0;
            return 0;
        }
        if (mLastMSGNodeNumber == 0) {
            const auto shown = Int16FromField(form.cmbMSGNodeNumber->Text(), u"The starting prompt"_s);
            mLastMSGNodeNumber = shown.value_or(0) - 1;
        }
        const int count = form.cmbPromptNumber->ListCount();
        if (count == 0)
            return 0;
        const int highest = form.cmbPromptNumber->List(count - 1).toInt();
        mLastMSGNodeNumber = mLastMSGNodeNumber == highest ? 1 : mLastMSGNodeNumber + 1;
        const auto read = used ? std::nullopt : UsedMessageNodeNumbers(form);
        const MessageNodeNumbers* numbers = read ? &*read : used;
        if (!numbers)
            return 0;
        const int free = FirstFreeNumber(*numbers, mLastMSGNodeNumber, highest);
        if (free > 0)
            mLastMSGNodeNumber = free;
        return static_cast<qint16>(free);
    });
}

QString BusinessRules::PromptForNewRow(EditorForm& form, const MessageNodeNumbers* used)
{
    if (form.LVDirectory->Items().RowCount() == 0)
        GetNextAvailableMSGNODENUMBER(form, true);
    const qint16 number = GetNextAvailableMSGNODENUMBER(form, false, used);
    return QString::number(number == 0 ? 1 : number);
}

std::optional<MessageNodeNumbers> BusinessRules::UsedMessageNodeNumbers(EditorForm& form)
{
    return ReportErrors(nextNumberProcedure, [&] {
        Recordset rows = mDataBase.Open(CommandId::Get_All_Existing_MSG_NodeNumber,
                                        {QString::number(form.ConfigID()), QString::number(form.PartitionID())});
        MessageNodeNumbers numbers;
        numbers.reserve(static_cast<std::size_t>(rows.RecordCount()));
        for (; !rows.EndOfFile(); rows.MoveNext()) {
            bool isNumber = false; // the engine keeps any text, and sorts it behind the numbers
            const int number = rows.Field(0).toString().toInt(&isNumber);
            if (isNumber)
                numbers.push_back(number);
        }
        return std::optional(std::move(numbers));
    });
}

bool BusinessRules::IsNodeExisted(EditorForm& form, const QString& nodeTypeId, const QString& nodeNumber)
{
    return ReportErrors(u"IsNodeExisted"_s, [&] {
        constexpr std::array messageNodeKinds{817.0, 818.0};
        const double type = NumberFromText(nodeTypeId).value_or(0);
        const bool isMessageNode =
            std::find(messageNodeKinds.begin(), messageNodeKinds.end(), type) != messageNodeKinds.end();
        const Recordset node = mDataBase.Open(CommandId::Get_Description,
                                              {QString::number(form.ConfigID()), QString::number(form.PartitionID()),
                                               isMessageNode ? NODE_TYPE_MSG : nodeTypeId, nodeNumber});
        return !node.EndOfFile();
    });
}

} // namespace qor
