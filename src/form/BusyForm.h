// The form while a long operation runs: its frame is disabled and its status bar shows.
#pragma once

#include <QPointer>
#include <QWidget>

namespace qor {

class EditorForm;

class BusyForm
{
public:
    explicit BusyForm(EditorForm& form);
    /// Hides the status bar, enables the frame and gives the focus back to the control that had it.
    ~BusyForm();
    BusyForm(const BusyForm&) = delete;
    BusyForm& operator=(const BusyForm&) = delete;

private:
    EditorForm& mForm;
    QPointer<QWidget> mFocus;
};

} // namespace qor
