#include "rules/PromptNumbers.h"

#include "platform/runtime/Numbers.h"
#include "rules/CommandValues.h"
#include "store/DataBase.h"

#include <algorithm>
#include <set>

namespace qor {

namespace {

/// The first of the numbers first..last that no message node has, or 0. The numbers in use come sorted, so
/// one walk over them finds it.
int FirstFreeNumber(const MessageNodeNumbers& used, int first, int last)
{
    int candidate = first;
    for (auto number = std::ranges::lower_bound(used, first); number != used.end(); ++number) {
        if (*number > candidate)
            break;
        candidate = *number + 1;
    }
    return candidate <= last ? candidate : 0;
}

} // namespace

MessageNodeNumbers UsedMessageNodeNumbers(DataBase& dataBase, const Partition& partition)
{
    Recordset rows = dataBase.Open(CommandId::Get_All_Existing_MSG_NodeNumber, ValuesOf(partition));
    MessageNodeNumbers numbers;
    numbers.reserve(static_cast<std::size_t>(rows.RecordCount()));
    for (; !rows.EndOfFile(); rows.MoveNext()) {
        if (const auto number = WholeNumber(rows.Field(0))) // a file keeps any text
            numbers.push_back(*number);
    }
    std::ranges::sort(numbers); // the engine sorts numbers that are kept as texts last
    return numbers;
}

int FreeNumberCount(const MessageNodeNumbers& used, int highest)
{
    const std::set<int> distinct(used.begin(), used.end());
    return highest - static_cast<int>(
                         std::ranges::count_if(distinct, [&](int number) { return number >= 1 && number <= highest; }));
}

QString NewEntryPrompt(qint16 number)
{
    return QString::number(number == 0 ? 1 : number);
}

qint16 PromptNumbers::Next(const QString& startingPrompt, int highest, const MessageNodeNumbers& used)
{
    if (mLast == 0)
        mLast = LeadingNumber(startingPrompt).value_or(1) - 1;
    mLast = mLast == highest ? 1 : mLast + 1;
    const int free = FirstFreeNumber(used, mLast, highest);
    if (free > 0)
        mLast = free;
    return static_cast<qint16>(free);
}

} // namespace qor
