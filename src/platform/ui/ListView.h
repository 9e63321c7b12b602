// A list view in report form: rows that are selected whole, column headers that can be clicked, grid lines,
// and a window procedure that sees its messages. Rows are edited by code only.
#pragma once

#include "platform/ui/WindowMessages.h"

#include <QTableView>
#include <vector>

namespace qor {

class ListItems;

/// The character that Ctrl+A types.
inline constexpr int ctrlA = 1;

class ListView : public QTableView, public MessageTarget
{
    Q_OBJECT
public:
    explicit ListView(QWidget* parent = nullptr);

    ListItems& Items() { return *mItems; }
    const ListItems& Items() const { return *mItems; }

    /// Appends a column of this width in logical pixels; one of width 0 exists but is not shown.
    void AddColumn(const QString& text, int width);
    /// The left edge of a column in the view's own coordinates, as it is scrolled now.
    int ColumnLeft(int column) const;

    /// Whether several rows can be selected at once.
    void SetMultiSelect(bool multiple);
    /// Whether letters choose the next row whose text in the current column begins with them.
    void SetTypeToFind(bool on) { mTypeToFind = on; }

    bool IsSelected(int row) const;
    /// Selects a row, which becomes the chosen one, or deselects it. If only one can be selected, selecting it
    /// deselects the others.
    void SetSelected(int row, bool selected);
    /// Selects every row from first to last, or just the last if only one can be selected.
    void SelectRows(int first, int last);
    /// Deselects every row from `first` to the last one.
    void DeselectFrom(int first);
    /// Selects these rows and no others; the chosen row stays.
    void SelectOnly(const std::vector<int>& rows);
    /// The selected rows in ascending order.
    std::vector<int> SelectedRows() const;

    /// The row that was chosen last and carries the focus, selected or not; -1 for none.
    int SelectedItem() const;
    /// Makes a row the chosen one without selecting it, or none with -1.
    void SetSelectedItem(int row);
    void EnsureVisible(int row);
    /// The first row in view; -1 for an empty list.
    int TopRow() const;
    void SetTopRow(int row);
    /// The row's top edge and height in the view's own coordinates.
    QRect RowRect(int row) const;

Q_SIGNALS:
    /// A row was chosen with the mouse or the keyboard.
    void ItemClick(int row);
    void ColumnClick(int column);
    void HorizontalScroll(); ///< the columns moved sideways
    void Resized();          ///< the rows have more or less room, as when a scroll bar comes or goes
    void KeyDown(int key);   ///< a Qt::Key, before the list itself acts on it
    void KeyPress(int character);
    void MouseUp();
    /// A context menu is wanted at this place on screen: at the mouse, or at the chosen row.
    void ContextMenu(const QPoint& position);

protected:
    MessageResult HandleMessage(quint32 message, quintptr wParam, qintptr lParam) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyboardSearch(const QString& text) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void resizeEvent(QResizeEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void SetUpHeaders();
    int FirstShownColumn() const;
    QModelIndex RowIndex(int row) const;

    void TellRowChange(int before);

    ListItems* mItems;
    int mRowBeforePress = -1;
    bool mTypeToFind = true;
    bool mClicked = false; ///< the button that went down last came up on the same row
};

} // namespace qor
