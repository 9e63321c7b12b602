// The editor in its user's hands: the built library is called as a host calls it, the form is known by the names of its
// controls, keys and clicks go in.
#pragma once

#include "platform/ui/ListItems.h"
#include "support/BoxScript.h"

#include <QDialog>
#include <QLineEdit>
#include <QTableView>

namespace qor {

/// ShowNodeEditor of a new object, as a host calls it.
void CallLibrary(int config, int partition, int node);

class Editor
{
public:
    using User = std::function<void(Editor& editor)>;

    /// Opens the editor and hands it to its user once it is on screen; what the user leaves open is closed without
    /// saving. `before`: boxes that come earlier.
    static void Open(int config, int partition, int node, const User& user,
                     std::initializer_list<ExpectedBox> before = {});
    static void Open(int config, int partition, int node, const User& user, BoxScript& boxes);

    /// A control of the form, shown or hidden.
    template <typename Control = QWidget>
    Control& Find(const char* name) const
    {
        return *qobject_cast<Control*>(&FindControl(name));
    }
    QTableView& List() const { return Find<QTableView>("LVDirectory"); }
    /// A text field, or a combo box's.
    QLineEdit& Field(const char* name) const;

    Editor& Click(const char* button);
    Editor& ClickRow(int row, Qt::KeyboardModifiers modifiers = {}, Qt::MouseButton button = Qt::LeftButton);
    /// again: as the second of two quick clicks.
    Editor& ClickHeader(int column, bool again = false);
    /// Presses keys on the control that has the focus.
    Editor& Keys(const char* keys);
    /// Shows a field that is hidden.
    Editor& FocusOn(const char* control);
    Editor& ListKeys(const char* keys) { return FocusOn("LVDirectory").Keys(keys); }
    /// Types or pastes over the whole text of a field; an empty text erases it.
    Editor& Type(const char* field, const QString& text);
    Editor& Paste(const char* field, const QString& text);
    Editor& Close() { return mForm.close(), *this; }
    /// Chooses from the context menu of the list or of another control.
    Editor& ChooseInMenu(const QString& text, const char* control = nullptr);
    /// Queues the Delete key, as from hands that do not wait for what they began.
    Editor& QueueRemoval();

    /// Boxes and dialogs that come next, in their order.
    template <typename... Boxes>
    Editor& Expect(const Boxes&... boxes)
    {
        (mBoxes.Expect(boxes), ...);
        return *this;
    }
    /// Fails the test unless all that was expected came.
    Editor& Expected() { return mBoxes.Verify(), *this; }
    /// Changes the label and saves, which brings up these.
    template <typename... Boxes>
    Editor& Save(const Boxes&... boxes)
    {
        return Expect(boxes...).Type("txtDescription", u"x"_s).Click("cmdApply").Expected();
    }

    bool IsOpen() const { return mForm.isVisible(); }
    bool IsDirty() const { return Find("cmdApply").isEnabled(); }
    /// What a label, button, field or combo box shows.
    QString Text(const char* control) const;
    /// The name of the control that has the focus.
    QString Focus() const { return mForm.focusWidget() ? mForm.focusWidget()->objectName() : QString(); }
    int RowCount() const { return List().model()->rowCount(); }
    QString Cell(int row, int column) const
    {
        return List().model()->index(row, column).data(plainTextRole).toString();
    }
    QRect CellRect(int row, int column) const { return List().visualRect(List().model()->index(row, column)); }
    bool IsInView(int row) const { return List().viewport()->rect().contains(CellRect(row, 1).center()); }
    /// "Smith|Anne|101|1|1" of each row.
    QStringList Rows() const;
    QList<int> Selected() const;
    /// "-rrrr-": which of a row's cells are red.
    QString Red(int row) const;

private:
    Editor(QDialog& form, BoxScript& boxes) : mForm(form), mBoxes(boxes) {}
    QWidget& FindControl(const char* name) const;
    void Leave();

    QDialog& mForm;
    BoxScript& mBoxes;
};

/// Compares two texts and tells the line of the case.
bool CompareAt(int line, const QString& actual, const QString& expected);

} // namespace qor
