// Prompts that another station took. A new entry gets the number of a message node that does not exist yet; until it is
// saved, other stations get the same one for their entries.
#pragma once

#include "rules/PromptNumbers.h"

#include <functional>
#include <QStringList>

namespace qor {

class EditorForm;

/// While one save is prepared: gives entries whose prompt was taken the next free one, and tells the administrator at
/// the end, when no lock is held. To keep the number would let another person's name be spoken.
class TakenPrompts
{
public:
    /// isNew: whether an entry has this prompt from its making here. next: the next free number, or 0.
    TakenPrompts(EditorForm& form, std::function<bool(const QString& prompt)> isNew, std::function<qint16()> next);
    /// Tells what was replaced.
    ~TakenPrompts();
    Q_DISABLE_COPY_MOVE(TakenPrompts)

    /// Replaces those among the numbers of all message nodes.
    void ReplaceAll(const MessageNodeNumbers& used);
    /// The prompt that this row has from now on: another one where there is one, and where the old one was its own.
    QString Replace(int row);

private:
    EditorForm& mForm;
    std::function<bool(const QString& prompt)> mIsNew;
    std::function<qint16()> mNext;
    QStringList mReplaced; ///< a line each
};

} // namespace qor
