// The form while a long operation runs: its frame is disabled and its status bar shows.
#pragma once

#include <QPointer>
#include <QWidget>

namespace qor {

class EditorForm;

class LongOperation
{
public:
    explicit LongOperation(EditorForm& form);
    /// Hides the status bar, drops the keys and clicks that were meant for the disabled frame, enables it and gives
    /// the focus back to the control that had it.
    ~LongOperation();
    LongOperation(const LongOperation&) = delete;
    LongOperation& operator=(const LongOperation&) = delete;

private:
    EditorForm& mForm;
    QPointer<QWidget> mFocus;
};

} // namespace qor
