// Where the controls lie when the form takes another size, shows its find line or has no navigation.
#include "form/EditorForm.h"
#include "form/FormSize.h"

#include <QScreen>
#include <QShowEvent>

namespace qor {

namespace {

constexpr int narrowestName = 20;

void MoveToTop(QWidget* control, int top)
{
    control->move(control->x(), top);
}

void MoveBy(QWidget* control, int right, int down)
{
    control->move(control->x() + right, control->y() + down);
}

void Widen(QWidget* control, int by)
{
    control->resize(control->width() + by, control->height());
}

} // namespace

void EditorForm::showEvent(QShowEvent* event)
{
    if (!event->spontaneous())
        RestoreSize();
    Form::showEvent(event); // which centres the form
}

void EditorForm::hideEvent(QHideEvent* event)
{
    Form::hideEvent(event);
    if (!event->spontaneous())
        SaveSize();
}

/// The saved size includes the navigation, so that the list is as high with and without it.
void EditorForm::RestoreSize()
{
    const QSize saved = SavedFormSize();
    if (!saved.isEmpty()) {
        const QSize wanted = saved - QSize(0, mHiddenHeight);
        resize(wanted.boundedTo(screen()->availableSize()).expandedTo(minimumSize()));
    }
    mOpenedSize = size();
}

void EditorForm::SaveSize() const
{
    const QSize used = normalGeometry().size();
    if (used.isValid() && used != mOpenedSize)
        SaveFormSize(used + QSize(0, mHiddenHeight));
}

void EditorForm::resizeEvent(QResizeEvent* event)
{
    Form::resizeEvent(event);
    const QSize growth = size() - mLaidSize;
    if (growth.isNull())
        return;
    KeepEntryEditors([&] { FollowEdges(growth); });
    mLaidSize = size();
}

void EditorForm::FollowEdges(const QSize& growth)
{
    const int right = growth.width();
    const int down = growth.height();
    WidenNames(mLaidSize.width() - minimumWidth(), width() - minimumWidth());
    for (QWidget* control : std::initializer_list<QWidget*>{Frame1, fraDirectory, LVDirectory})
        control->resize(control->size() + growth);
    for (QWidget* control : std::initializer_list<QWidget*>{txtCSVFilename, fraFind, StatusBar1})
        Widen(control, right);
    MoveBy(cmdOpenCSVFilename, right, 0);
    for (QWidget* control : {cmdDirUp, cmdDirDown})
        MoveBy(control, right, down);
    for (QWidget* control : std::initializer_list<QWidget*>{fraFind, cmdDirAdd, cmdDirInsert, cmdDirRemove, cmdDirEdit,
                                                            cmdDirSaveList, cmdOK, cmdCancel, cmdApply, StatusBar1})
        MoveBy(control, 0, down);
}

/// The two name columns share the width that the form has beyond its design. By how much a column was dragged wider or
/// narrower stays.
void EditorForm::WidenNames(int before, int after)
{
    const auto widen = [this](DirectoryColumn column, int by) {
        const int index = static_cast<int>(column);
        LVDirectory->setColumnWidth(index, qMax(LVDirectory->columnWidth(index) + by, narrowestName));
    };
    widen(DirectoryColumn::LastName, after / 2 - before / 2);
    widen(DirectoryColumn::FirstName, (after - after / 2) - (before - before / 2));
}

void EditorForm::ShowFindLine(bool shown)
{
    if (shown != fraFind->isHidden())
        return;
    KeepEntryEditors([&] {
        const int height = fraFind->height();
        LVDirectory->resize(LVDirectory->width(), LVDirectory->height() + (shown ? -height : height));
        fraFind->setVisible(shown);
    });
}

void EditorForm::HideNavigation()
{
    cmdFirst->hide();
    cmdPrevious->hide();
    cmbNode->hide();
    lblRecordPosition->hide();
    cmdNext->hide();
    cmdLast->hide();
}

void EditorForm::CompactLayoutWithoutNavigation()
{
    const int gap = lblLabel->y() - cmdFirst->y();
    MoveToTop(lblLabel, cmdFirst->y());
    MoveToTop(txtDescription, lblLabel->y());
    MoveToTop(lblAccessCode, lblAccessCode->y() - gap);
    for (QWidget* control : std::initializer_list<QWidget*>{txtAccessCode, lblStartingPrompt, lblMSG, cmbMSGNodeNumber})
        MoveToTop(control, lblAccessCode->y());
    for (QWidget* control : std::initializer_list<QWidget*>{fraDirectory, cmdOK, cmdCancel, cmdApply, StatusBar1})
        MoveToTop(control, control->y() - gap);
    Frame1->resize(Frame1->width(), Frame1->height() - gap);
    mHiddenHeight += gap;
    mLaidSize.rheight() -= gap;
    setMinimumHeight(minimumHeight() - gap);
    resize(width(), height() - gap);
}

} // namespace qor
