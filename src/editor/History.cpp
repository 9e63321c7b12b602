#include "editor/History.h"

#include "form/EditorForm.h"

#include <QUndoCommand>
#include <utility>

namespace qor {

namespace {

constexpr int highestStepCount = 100;

} // namespace

class ListChange : public QUndoCommand
{
public:
    ListChange(History& history, std::shared_ptr<const ListState> before, std::shared_ptr<const ListState> after,
               const QString& text)
        : QUndoCommand(text), mHistory(history), mBefore(std::move(before)), mAfter(std::move(after))
    {
    }

    void undo() override { mHistory.Restore(*mBefore); }
    void redo() override
    {
        if (std::exchange(mIsDone, false)) // the stack runs what is pushed, but this has happened already
            return;
        mHistory.Restore(*mAfter);
    }

private:
    History& mHistory;
    std::shared_ptr<const ListState> mBefore;
    std::shared_ptr<const ListState> mAfter;
    bool mIsDone = true;
};

History::Step::Step(History& history, QString text) : mHistory(history), mText(std::move(text))
{
    if (mHistory.mInStep)
        return;
    mHistory.EndVisit();
    mHistory.mInStep = true;
    mBefore = TakeState(*mHistory.mForm.LVDirectory);
}

History::Step::~Step()
{
    if (!mBefore)
        return;
    mHistory.mInStep = false;
    mHistory.Push(std::move(*mBefore), mText);
}

History::History(EditorForm& form) : mForm(form)
{
    mStack.setUndoLimit(highestStepCount);
}

void History::BeginVisit(int row)
{
    EndVisit();
    const ListView& list = *mForm.LVDirectory;
    mVisit = Visit{list.Items().Key(row), TakeState(list)};
}

void History::EndVisit()
{
    if (!mVisit)
        return;
    const QString text = VisitText();
    Push(std::exchange(mVisit, std::nullopt)->before, text);
}

/// "Edit Smith Anne", by the name that the row has now.
QString History::VisitText() const
{
    const ListView& list = *mForm.LVDirectory;
    const int row = list.Items().RowOfKey(mVisit->rowKey);
    if (row < 0)
        return u"Edit"_s;
    const DirectoryEntry entry = EntryAt(list, row);
    return u"Edit %1 %2"_s.arg(entry.lastName, entry.firstName).simplified();
}

void History::Push(ListState before, const QString& text)
{
    auto after = std::make_shared<const ListState>(TakeState(*mForm.LVDirectory));
    if (IsSameDirectory(before, *after))
        return;
    const bool follows = mLatest && mLatest->rows == before.rows && IsSameDirectory(*mLatest, before);
    auto start = follows ? mLatest : std::make_shared<const ListState>(std::move(before));
    mLatest = after;
    mStack.push(new ListChange(*this, std::move(start), std::move(after), text));
    mAfterStep();
}

bool History::HasVisitChanged() const
{
    return mVisit && !IsSameDirectory(mVisit->before, TakeState(*mForm.LVDirectory));
}

bool History::CanUndo() const
{
    return mStack.canUndo() || HasVisitChanged();
}

QString History::UndoText() const
{
    if (!CanUndo())
        return u"Undo"_s;
    return u"Undo "_s + (HasVisitChanged() ? VisitText() : mStack.undoText());
}

QString History::RedoText() const
{
    return CanRedo() ? u"Redo "_s + mStack.redoText() : u"Redo"_s;
}

void History::Undo()
{
    EndVisit();
    mStack.undo();
}

void History::Redo()
{
    EndVisit();
    mStack.redo();
}

void History::Clear()
{
    mVisit.reset();
    mLatest.reset();
    mStack.clear();
}

void History::Restore(const ListState& state)
{
    PutState(*mForm.LVDirectory, state);
    mForm.MarkChanged();
    mAfterStep();
}

} // namespace qor
