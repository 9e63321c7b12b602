// A combo box. Change comes when its text is typed, or assigned by code to a different text; Click when an
// item is chosen, by the user or by setting the list index in code to a different one. Setting the list index
// changes the text without Change. The Fill calls, for loaders, raise neither. The wheel over a closed combo box
// changes nothing.
#pragma once

#include <QComboBox>

namespace qor {

class NumberListModel;

class ComboBox : public QComboBox
{
    Q_OBJECT
    /// Whether the text can be typed (dropdown combo) or only chosen (dropdown list).
    Q_PROPERTY(bool dropdownCombo READ isEditable WRITE SetDropdownCombo)
public:
    explicit ComboBox(QWidget* parent = nullptr);

    void SetDropdownCombo(bool editable);

    /// Adds an item at the end; the list index and the text stay as they are.
    void AddItem(const QString& text, const QVariant& itemData = {});
    /// Fills the list with the numbers from first to last; the list index becomes -1, a typed text stays.
    void SetNumbers(int first, int last);
    /// Empties the list; the list index becomes -1, a typed text stays.
    void Clear();

    int ListCount() const { return count(); }
    /// An item's text; raises RuntimeError for a position that is not in the list.
    QString List(int index) const;

    /// The position of the chosen item; -1 when none is chosen, or when the text differs from the item's.
    int ListIndex() const;
    /// Chooses an item, or none with -1. Raises RuntimeError for a position that is not in the list.
    void SetListIndex(int index);
    /// The same without Click.
    void FillListIndex(int index);

    QString Text() const { return currentText(); }
    /// Sets the text of a dropdown combo.
    void SetText(const QString& text);
    /// The same without Change.
    void FillText(const QString& text);
    void MoveCaretToEnd();
    /// Narrows the font of a dropdown combo until this text can be seen whole.
    void NarrowFor(const QString& longestText);

    void showPopup() override;

Q_SIGNALS:
    void Change();
    void Click();

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    void RequireItem(int index) const;
    void Edit_Typed();
    void FollowText();
    void Restore(int index, const QString& text);

    NumberListModel* mNumbers = nullptr;
};

} // namespace qor
