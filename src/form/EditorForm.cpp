#include "form/EditorForm.h"

#include "form/ModuleState.h"
#include "form/NavigationIcons.h"
#include "platform/runtime/Numbers.h"
#include "platform/ui/ListItems.h"
#include "platform/ui/Screen.h"
#include "rules/Validation.h"

#include <algorithm>
#include <QHeaderView>

namespace qor {

namespace {

constexpr qreal formFontPoints = 8.25;
constexpr qreal messageLabelPoints = 9;
constexpr int rowPadding = 5;
constexpr int positionMargin = 2;

/// The blue of the CSV hint, made readable where the palette is dark.
const QColor hintColour(0x00, 0x00, 0xC0);

const QString editCaption = u"&Edit"_s;
const QString editOffCaption = u"&Edit Off"_s;

} // namespace

void EntryEditor::Fill(const QString& text) const
{
    if (TextBox* box = Text())
        box->Fill(text);
    else if (auto* combo = qobject_cast<ComboBox*>(control))
        combo->FillText(text);
}

EditorForm::EditorForm()
{
    setupUi(this);
    mEntryEditors = {
        EntryEditor{txtLastName, DirectoryColumn::LastName, IsLetter},
        EntryEditor{txtFirstName, DirectoryColumn::FirstName, IsLetter},
        EntryEditor{txtExtension, DirectoryColumn::Extension, IsDigit},
        EntryEditor{cmbPromptNumber, DirectoryColumn::Prompt, IsDigit},
        EntryEditor{txtPassword, DirectoryColumn::Password, IsDigit},
    };
    SetUpFonts();
    SetUpIcons();
    SetUpColours();
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setMinimumSize(size());
    mLaidSize = size();
    StatusBar1->hide();
    for (const EntryEditor& editor : mEntryEditors)
        editor.control->raise();
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

void EditorForm::KeepEntryEditors(const std::function<void()>& change)
{
    const bool hadEditors = EntryEditorsShown();
    QWidget* focus = focusWidget();
    change();
    if (!hadEditors)
        return;
    LVDirectory->EnsureVisible(LVDirectory->SelectedItem());
    LayEntryEditors(LVDirectory->SelectedItem());
    if (focus && focus != focusWidget())
        focus->setFocus();
}

void EditorForm::SetShowsNode(bool shown)
{
    mShowsNode = shown;
    for (QWidget* control :
         std::initializer_list<QWidget*>{fraDirectory, txtDescription, txtAccessCode, cmbMSGNodeNumber, cmdOK})
        control->setEnabled(shown);
    if (!shown)
        MarkUnchanged();
}

void EditorForm::SetHighestMessageNode(int number)
{
    mHighestMessageNode = number;
    cmbPromptNumber->SetNumbers(1, number);
    if (number == 0)
        return;
    cmbMSGNodeNumber->SetNumbers(1, number);
    cmbMSGNodeNumber->NarrowFor(QString::number(number));
    cmbMSGNodeNumber->FillListIndex(0);
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
    for (const EntryEditor& editor : mEntryEditors)
        LayOver(editor, row);
}

/// A hidden column has no width, so that its field stays hidden with it.
void EditorForm::LayOver(const EntryEditor& editor, int row)
{
    const int index = static_cast<int>(editor.column);
    const QRect rowRect = LVDirectory->RowRect(row);
    const QRect cell(LVDirectory->ColumnLeft(index), rowRect.top(), LVDirectory->columnWidth(index), rowRect.height());
    const QRect shown = cell & rowRect; // a column scrolled out sideways is cut at the list's edge
    editor.control->setGeometry(shown.translated(LVDirectory->pos()));
    editor.control->setVisible(shown.isValid());
}

void EditorForm::FillEntryEditors(int row)
{
    for (const EntryEditor& editor : mEntryEditors)
        editor.Fill(EntryText(*LVDirectory, row, editor.column));
}

void EditorForm::HideEntryEditors()
{
    for (const EntryEditor& editor : mEntryEditors)
        editor.control->hide();
}

bool EditorForm::EntryEditorsShown() const
{
    return std::ranges::any_of(mEntryEditors, [](const EntryEditor& editor) { return !editor.control->isHidden(); });
}

void EditorForm::MarkUnchanged()
{
    if (focusWidget() == cmdApply) // also while the form is not the active window, as behind a box
        cmdOK->setFocus();
    cmdApply->setEnabled(false);
}

void EditorForm::FocusFirstControl()
{
    const auto isUsable = [this](const QWidget& control) {
        return (control.focusPolicy() & Qt::TabFocus) != 0 && control.isEnabled() && control.isVisibleTo(this);
    };
    QWidget* control = nextInFocusChain();
    while (control != this && !isUsable(*control))
        control = control->nextInFocusChain();
    control->setFocus();
}

void EditorForm::ShowPosition(const QString& position)
{
    lblRecordPosition->setText(position);
    const int room = lblRecordPosition->width() - 2 * positionMargin;
    lblRecordPosition->setFont(NarrowedToFit(lblLabel->font(), position, room));
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
