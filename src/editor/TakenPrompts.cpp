#include "editor/TakenPrompts.h"

#include "form/EditorForm.h"
#include "platform/ui/MsgBox.h"

#include <algorithm>

namespace qor {

TakenPrompts::TakenPrompts(EditorForm& form, std::function<bool(const QString& prompt)> isNew,
                           std::function<qint16()> next)
    : mForm(form), mIsNew(std::move(isNew)), mNext(std::move(next))
{
}

TakenPrompts::~TakenPrompts()
{
    if (mReplaced.isEmpty())
        return;
    constexpr qsizetype shownLines = 8;
    QStringList lines = mReplaced.first(std::min(shownLines, mReplaced.size()));
    if (mReplaced.size() > shownLines)
        lines << u"and %1 more"_s.arg(mReplaced.size() - shownLines);
    MsgBox(
        u"Another station made message nodes for its own entries meanwhile. These entries here have the next free ones "
        "now:\r\n"_s +
            lines.join(u"\r\n"_s),
        MsgBoxStyle::Information, u"Information"_s);
}

void TakenPrompts::ReplaceAll(const MessageNodeNumbers& used)
{
    for (int row = 0; row < mForm.LVDirectory->Items().RowCount(); ++row) {
        const int prompt = EntryText(*mForm.LVDirectory, row, DirectoryColumn::Prompt).toInt();
        if (std::ranges::binary_search(used, prompt))
            Replace(row);
    }
}

QString TakenPrompts::Replace(int row)
{
    ListView& list = *mForm.LVDirectory;
    const DirectoryEntry entry = EntryAt(list, row);
    const qint16 next = mIsNew(entry.prompt) ? mNext() : qint16{0};
    if (next == 0)
        return entry.prompt;
    QString prompt = QString::number(next);
    list.Items().SetText(row, static_cast<int>(DirectoryColumn::Prompt), prompt);
    mReplaced << u"%1 %2: MSG %3 in place of MSG %4"_s.arg(entry.lastName, entry.firstName, prompt, entry.prompt);
    return prompt;
}

} // namespace qor
