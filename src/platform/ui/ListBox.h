// A working list of texts, never shown. Searches go through its window procedure and do not walk the list.
#pragma once

#include "platform/ui/WindowMessages.h"

#include <QHash>
#include <QWidget>

namespace qor {

/// The messages behind Find and FindExact; lParam points to the QString to look for.
inline constexpr quint32 LB_FINDSTRING = 0x018F;
inline constexpr quint32 LB_FINDSTRINGEXACT = 0x01A2;
inline constexpr MessageResult LB_ERR = -1;

class ListBox : public QWidget, public MessageTarget
{
    Q_OBJECT
public:
    explicit ListBox(QWidget* parent = nullptr) : QWidget(parent) {}

    int ListCount() const { return mCount; }
    void AddItem(const QString& text);
    void Clear();

    /// Both search the whole list, ignoring case: the position of the first item that begins with the text, or that
    /// equals it; -1 for none.
    int Find(const QString& text) const { return Ask(LB_FINDSTRING, text); }
    int FindExact(const QString& text) const { return Ask(LB_FINDSTRINGEXACT, text); }

protected:
    MessageResult HandleMessage(quint32 message, quintptr wParam, qintptr lParam) override;

private:
    int Ask(quint32 message, const QString& text) const;

    int mCount = 0;
    QHash<QString, int> mFirstEqual;  ///< folded text -> its first position
    QHash<QString, int> mFirstPrefix; ///< every beginning of a folded text -> its first position
};

} // namespace qor
