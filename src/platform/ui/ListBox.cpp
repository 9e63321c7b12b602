#include "platform/ui/ListBox.h"

namespace qor {

void ListBox::AddItem(const QString& text)
{
    const QString folded = text.toCaseFolded();
    if (!mFirstEqual.contains(folded)) {
        mFirstEqual.insert(folded, mCount);
        for (qsizetype length = 0; length <= folded.size(); ++length) {
            const QString prefix = folded.first(length);
            if (!mFirstPrefix.contains(prefix))
                mFirstPrefix.insert(prefix, mCount);
        }
    }
    ++mCount;
}

void ListBox::Clear()
{
    mCount = 0;
    mFirstEqual.clear();
    mFirstPrefix.clear();
}

int ListBox::Ask(quint32 message, const QString& text) const
{
    return static_cast<int>(SendMessageA(Handle(), message, 0, reinterpret_cast<qintptr>(&text)));
}

MessageResult ListBox::HandleMessage(quint32 message, quintptr /*wParam*/, qintptr lParam)
{
    if (message != LB_FINDSTRING && message != LB_FINDSTRINGEXACT)
        return 0;
    const QString folded = reinterpret_cast<const QString*>(lParam)->toCaseFolded();
    const QHash<QString, int>& positions = message == LB_FINDSTRING ? mFirstPrefix : mFirstEqual;
    return positions.value(folded, LB_ERR);
}

} // namespace qor
