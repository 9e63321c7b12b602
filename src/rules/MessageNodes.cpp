#include "form/EditorForm.h"
#include "platform/runtime/ErrorReport.h"
#include "platform/runtime/Numbers.h"
#include "rules/BusinessRules.h"

#include <array>

namespace qor {

qint16 BusinessRules::GetNextAvailableMSGNODENUMBER(EditorForm& form, bool reset)
{
    return ReportErrors(u"GetNextAvailableMSGNODENUMBER"_s, [&]() -> qint16 {
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
        const int free = FirstFreeNumber(form, mLastMSGNodeNumber, highest);
        if (free > 0)
            mLastMSGNodeNumber = free;
        return static_cast<qint16>(free);
    });
}

/// The first of the numbers first..last that no message node has, or 0. The numbers in use come sorted, so
/// one walk over them finds it.
int BusinessRules::FirstFreeNumber(EditorForm& form, int first, int last)
{
    Recordset used = mDataBase.Open(CommandId::Get_All_Existing_MSG_NodeNumber,
                                    {QString::number(form.ConfigID()), QString::number(form.PartitionID())});
    int candidate = first;
    for (; !used.EndOfFile() && candidate <= last; used.MoveNext()) {
        const int number = used.Field(0).toInt();
        if (number > candidate)
            break;
        if (number == candidate)
            ++candidate;
    }
    return candidate <= last ? candidate : 0;
}

bool BusinessRules::IsNodeExisted(EditorForm& form, const QString& nodeTypeId, const QString& nodeNumber)
{
    return ReportErrors(u"IsNodeExisted"_s, [&] {
        constexpr std::array messageNodeKinds{817.0, 818.0};
        const double type = NumberFromText(nodeTypeId).value_or(0);
        const bool isMessageNode =
            std::find(messageNodeKinds.begin(), messageNodeKinds.end(), type) != messageNodeKinds.end();
        const Recordset node =
            mDataBase.Open(CommandId::Get_Description,
                           {QString::number(form.ConfigID()), QString::number(form.PartitionID()),
                            isMessageNode ? NODE_TYPE_MSG : nodeTypeId, nodeNumber});
        return !node.EndOfFile();
    });
}

} // namespace qor
