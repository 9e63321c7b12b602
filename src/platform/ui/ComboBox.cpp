#include "platform/ui/ComboBox.h"

#include "platform/runtime/RuntimeError.h"
#include "platform/ui/NumberListModel.h"
#include "platform/ui/Screen.h"
#include "platform/ui/TextBox.h"

#include <QLineEdit>
#include <QListView>
#include <QWheelEvent>

namespace qor {

ComboBox::ComboBox(QWidget* parent) : QComboBox(parent)
{
    // The default policy measures every item at the first show.
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setInsertPolicy(NoInsert);
    connect(this, &QComboBox::activated, this, &ComboBox::Click);
}

void ComboBox::SetDropdownCombo(bool editable)
{
    setEditable(editable);
    if (!editable)
        return;
    setLineEdit(new TextBox(this));
    lineEdit()->setTextMargins(-2, 0, -2, 0); // the box has a border of its own
    setCompleter(nullptr);                    // one would type the rest of a number by itself
    connect(lineEdit(), &QLineEdit::textEdited, this, &ComboBox::Edit_Typed);
}

void ComboBox::AddItem(const QString& text, const QVariant& itemData)
{
    const int index = currentIndex();
    const QString shown = currentText();
    addItem(text, itemData);
    Restore(index, shown);
}

void ComboBox::SetNumbers(int first, int last)
{
    const QString shown = currentText();
    if (!mNumbers) {
        mNumbers = new NumberListModel(this);
        setModel(mNumbers);
    }
    mNumbers->SetRange(first, last);
    Restore(-1, shown);
}

void ComboBox::Clear()
{
    const QString shown = currentText();
    if (mNumbers)
        mNumbers->SetRange(1, 0);
    else
        clear();
    Restore(-1, shown);
}

/// Keeps what the box showed: the toolkit chooses the first item when a list gets its items.
void ComboBox::Restore(int index, const QString& text)
{
    setCurrentIndex(index);
    if (isEditable())
        setEditText(text);
}

int ComboBox::ListIndex() const
{
    const int index = currentIndex();
    return index >= 0 && itemText(index) == currentText() ? index : -1;
}

void ComboBox::RequireItem(int index) const
{
    if (index < 0 || index >= count()) {
        throw RuntimeError(
            ErrorNumber::SubscriptOutOfRange,
            u"The list of %1 has no item at position %2; it has %3."_s.arg(objectName()).arg(index + 1).arg(count()));
    }
}

QString ComboBox::List(int index) const
{
    RequireItem(index);
    return itemText(index);
}

void ComboBox::SetListIndex(int index)
{
    if (index == ListIndex())
        return;
    FillListIndex(index);
    Q_EMIT Click();
}

void ComboBox::FillListIndex(int index)
{
    if (index != -1)
        RequireItem(index);
    setCurrentIndex(index);
}

void ComboBox::SetText(const QString& text)
{
    if (text == currentText())
        return;
    FillText(text);
    Q_EMIT Change();
}

void ComboBox::FillText(const QString& text)
{
    setEditText(text);
    FollowText();
}

void ComboBox::MoveCaretToEnd()
{
    lineEdit()->end(false);
}

void ComboBox::NarrowFor(const QString& longestText)
{
    if (const auto* box = qobject_cast<TextBox*>(lineEdit()))
        lineEdit()->setFont(NarrowedToFit(font(), longestText, box->TextWidth()));
}

void ComboBox::Edit_Typed()
{
    FollowText();
    Q_EMIT Change();
}

/// Chooses the item that has the text, so that the arrow keys and the list start from it.
void ComboBox::FollowText()
{
    const int index = findText(currentText(), Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index >= 0)
        setCurrentIndex(index);
}

void ComboBox::showPopup()
{
    if (auto* list = qobject_cast<QListView*>(view()))
        list->setUniformItemSizes(true);
    QComboBox::showPopup();
}

void ComboBox::wheelEvent(QWheelEvent* event)
{
    event->ignore();
}

} // namespace qor
