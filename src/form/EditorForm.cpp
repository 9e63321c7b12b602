#include "form/EditorForm.h"

#include "form/ModuleState.h"
#include "form/NavigationIcons.h"
#include "platform/ui/ListItems.h"
#include "platform/ui/Screen.h"

#include <algorithm>
#include <QEvent>
#include <QHeaderView>

namespace qor {

namespace {

constexpr qreal formFontPoints = 8.25;
constexpr qreal messageLabelPoints = 9;
constexpr int rowPadding = 5;

/// The blue of the CSV hint, made readable where the palette is dark.
const QColor hintColour(0x00, 0x00, 0xC0);

const QString editCaption = u"&Edit"_s;
const QString editOffCaption = u"&Edit Off"_s;

void MoveToTop(QWidget* control, int top)
{
    control->move(control->x(), top);
}

} // namespace

EditorForm::EditorForm()
{
    setupUi(this);
    SetUpFonts();
    SetUpIcons();
    SetUpColours();
    FixSize(height());
    StatusBar1->hide();
    for (QWidget* editor :
         std::initializer_list<QWidget*>{txtLastName, txtFirstName, txtExtension, cmbPromptNumber, txtPassword})
        editor->raise();
}

EditorForm::~EditorForm()
{
    if (Module().LoadedForm == this)
        Module().LoadedForm = nullptr;
}

void EditorForm::SetUpFonts()
{
    const QFont font = FormFont(formFontPoints);
    setFont(font);
    for (QWidget* control : findChildren<QWidget*>())
        control->setFont(font);
    fraDirectory->setFont(FormFont(formFontPoints, true));
    lblMSG->setFont(FormFont(messageLabelPoints));
    LVDirectory->verticalHeader()->setDefaultSectionSize(QFontMetrics(font).height() + rowPadding);
}

void EditorForm::SetUpIcons()
{
    cmdFirst->setIcon(MakeNavigationIcon(NavigationIcon::First));
    cmdPrevious->setIcon(MakeNavigationIcon(NavigationIcon::Previous));
    cmdNext->setIcon(MakeNavigationIcon(NavigationIcon::Next));
    cmdLast->setIcon(MakeNavigationIcon(NavigationIcon::Last));
}

void EditorForm::SetUpColours()
{
    QPalette hint = lblCSVFormat->palette();
    hint.setColor(QPalette::WindowText, ReadableOn(palette().color(QPalette::Window), hintColour));
    lblCSVFormat->setPalette(hint);
}

void EditorForm::changeEvent(QEvent* event)
{
    Form::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        SetUpColours();
}

void EditorForm::FixSize(int height)
{
    setFixedSize(width(), height);
    MoveToTop(StatusBar1, height - StatusBar1->height());
}

bool EditorForm::InEditMode() const
{
    return cmdDirEdit->text() == editOffCaption;
}

void EditorForm::SetEditMode(bool on)
{
    cmdDirEdit->setText(on ? editOffCaption : editCaption);
}

void EditorForm::LayEntryEditors(int row)
{
    txtPassword->hide();
    LayOver(*txtLastName, row, DirectoryColumn::LastName);
    LayOver(*txtFirstName, row, DirectoryColumn::FirstName);
    LayOver(*txtExtension, row, DirectoryColumn::Extension);
    LayOver(*cmbPromptNumber, row, DirectoryColumn::Prompt);
}

void EditorForm::LayOver(QWidget& editor, int row, DirectoryColumn column)
{
    const int index = static_cast<int>(column);
    const QRect rowRect = LVDirectory->RowRect(row);
    const QRect cell(LVDirectory->ColumnLeft(index), rowRect.top(), LVDirectory->columnWidth(index), rowRect.height());
    const QRect shown = cell & rowRect; // a column scrolled out sideways is cut at the list's edge
    editor.setGeometry(shown.translated(LVDirectory->pos()));
    editor.setVisible(shown.isValid());
}

void EditorForm::HideEntryEditors()
{
    txtLastName->hide();
    txtFirstName->hide();
    txtExtension->hide();
    txtPassword->hide();
    cmbPromptNumber->hide();
}

bool EditorForm::EntryEditorsShown() const
{
    const std::initializer_list<const QWidget*> editors{txtLastName, txtFirstName, txtExtension, cmbPromptNumber};
    return std::any_of(editors.begin(), editors.end(), [](const QWidget* editor) { return !editor->isHidden(); });
}

void EditorForm::MarkUnchanged()
{
    if (cmdApply->hasFocus())
        cmdOK->setFocus();
    cmdApply->setEnabled(false);
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
    for (QWidget* control : std::initializer_list<QWidget*>{fraDirectory, cmdOK, cmdCancel, cmdApply})
        MoveToTop(control, control->y() - gap);
    Frame1->resize(Frame1->width(), Frame1->height() - gap);
    FixSize(height() - gap);
}

void EditorForm::EnableNavigationButtons()
{
    const bool hasPrevious = cmbNode->ListIndex() > 0;
    const bool hasNext = cmbNode->ListIndex() < cmbNode->ListCount() - 1;
    cmdFirst->setEnabled(hasPrevious);
    cmdPrevious->setEnabled(hasPrevious);
    cmdNext->setEnabled(hasNext);
    cmdLast->setEnabled(hasNext);
}

} // namespace qor
