// Undo and redo of what is done to the directory list, in steps.
#pragma once

#include "editor/ListState.h"

#include <functional>
#include <memory>
#include <optional>
#include <QUndoStack>

namespace qor {

class EditorForm;

/// Holds past states of the list. The header's fields have an undo of their own, and neither the checked prompts nor
/// the remembered message-node number is rewound.
class History
{
public:
    explicit History(EditorForm& form);

    /// Everything that happens to the list during its life is one step, if it changes the directory at all. A step
    /// within a step belongs to the outer one.
    class Step
    {
    public:
        /// text: what is undone, "Remove 3 Entries"
        Step(History& history, QString text);
        ~Step();
        Step(const Step&) = delete;
        Step& operator=(const Step&) = delete;

    private:
        History& mHistory;
        QString mText;
        std::optional<ListState> mBefore; ///< not within another step
    };

    /// The in-place fields are over this row: what is typed in them until EndVisit is one step.
    void BeginVisit(int row);
    void EndVisit();

    bool CanUndo() const;
    bool CanRedo() const { return mStack.canRedo(); }
    /// "Undo Remove 3 Entries", or "Undo" when there is nothing to undo.
    QString UndoText() const;
    QString RedoText() const;

    /// What is to happen after each step, and after each one that is undone or redone.
    void SetAfterStep(std::function<void()> afterStep) { mAfterStep = std::move(afterStep); }

    /// Both mark the form as changed.
    void Undo();
    void Redo();
    void Clear();

private:
    friend class ListChange;
    struct Visit
    {
        QString rowKey;
        ListState before;
    };

    void Push(ListState before, const QString& text);
    void Restore(const ListState& state);
    bool HasVisitChanged() const;
    QString VisitText() const;

    EditorForm& mForm;
    QUndoStack mStack;
    std::function<void()> mAfterStep = [] {};
    bool mInStep = false;
    std::optional<Visit> mVisit;
    std::shared_ptr<const ListState> mLatest; ///< what the last step led to; the next one usually starts from it
};

} // namespace qor
