#include "platform/ui/ListView.h"

#include "platform/ui/AltLetter.h"
#include "platform/ui/ListItems.h"
#include "platform/ui/Screen.h"

#include <algorithm>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStyledItemDelegate>

namespace qor {

namespace {

/// Draws a row's own colours so that they can be read on the current palette; black becomes the palette's text colour.
class RowDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        const QPalette palette = option->palette;
        QStyledItemDelegate::initStyleOption(option, index);
        const QVariant colour = index.data(Qt::ForegroundRole);
        if (!colour.isValid())
            return;
        const auto wanted = colour.value<QColor>();
        option->palette.setColor(QPalette::Text, wanted == Qt::black
                                                     ? palette.color(QPalette::Text)
                                                     : ReadableOn(palette.color(QPalette::Base), wanted));
    }
};

} // namespace

ListView::ListView(QWidget* parent) : QTableView(parent), mItems(new ListItems(this))
{
    setModel(mItems);
    setItemDelegate(new RowDelegate(this));
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setHorizontalScrollMode(ScrollPerPixel);
    SetUpHeaders();
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { SendMessageA(Handle(), WM_VSCROLL, 0, 0); });
    connect(horizontalScrollBar(), &QScrollBar::valueChanged, this, &ListView::HorizontalScroll);
    connect(this, &QTableView::clicked, this, [this](const QModelIndex& index) {
        mClicked = true;
        Q_EMIT ItemClick(index.row());
    });
}

void ListView::SetUpHeaders()
{
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    horizontalHeader()->setMinimumSectionSize(1);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->viewport()->installEventFilter(this);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &ListView::ColumnClick);
    // The second of two quick clicks.
    connect(horizontalHeader(), &QHeaderView::sectionDoubleClicked, this, &ListView::ColumnClick);
}

void ListView::AddColumn(const QString& text, int width)
{
    mItems->AddColumn(text, width > 0);
    const int column = mItems->ColumnCount() - 1;
    setColumnHidden(column, width == 0);
    if (width > 0)
        setColumnWidth(column, width);
}

int ListView::ColumnLeft(int column) const
{
    return viewport()->x() + columnViewportPosition(column);
}

void ListView::SetMultiSelect(bool multiple)
{
    setSelectionMode(multiple ? ExtendedSelection : SingleSelection);
}

int ListView::FirstShownColumn() const
{
    int column = 0;
    while (column + 1 < mItems->ColumnCount() && isColumnHidden(column))
        ++column;
    return column;
}

QModelIndex ListView::RowIndex(int row) const
{
    return mItems->index(row, FirstShownColumn());
}

bool ListView::IsSelected(int row) const
{
    return selectionModel()->isSelected(RowIndex(row));
}

void ListView::SetSelected(int row, bool selected)
{
    using Flag = QItemSelectionModel;
    if (!selected) {
        selectionModel()->select(RowIndex(row), Flag::Deselect | Flag::Rows);
        return;
    }
    const bool alone = selectionMode() == SingleSelection;
    selectionModel()->setCurrentIndex(RowIndex(row), (alone ? Flag::ClearAndSelect : Flag::Select) | Flag::Rows);
}

void ListView::SelectRows(int first, int last)
{
    if (first > last)
        return;
    if (selectionMode() == SingleSelection) {
        SetSelected(last, true);
        return;
    }
    selectionModel()->select(QItemSelection(RowIndex(first), RowIndex(last)),
                             QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

void ListView::DeselectFrom(int first)
{
    const int last = mItems->RowCount() - 1;
    if (first > last)
        return;
    if (first == 0) {
        selectionModel()->clearSelection(); // deselecting compares each range with each
        return;
    }
    selectionModel()->select(QItemSelection(RowIndex(first), RowIndex(last)),
                             QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
}

void ListView::SelectOnly(const std::vector<int>& rows)
{
    const int lastColumn = mItems->ColumnCount() - 1;
    QItemSelection selection;
    for (auto first = rows.begin(); first != rows.end();) { // neighbours as one range
        auto last = first;
        while (std::next(last) != rows.end() && *std::next(last) == *last + 1)
            ++last;
        selection.append(QItemSelectionRange(mItems->index(*first, 0), mItems->index(*last, lastColumn)));
        first = std::next(last);
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect); // whole rows: Rows would widen each range
}

std::vector<int> ListView::SelectedRows() const
{
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    }
    std::ranges::sort(rows);
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

int ListView::SelectedItem() const
{
    return currentIndex().row();
}

void ListView::SetSelectedItem(int row)
{
    selectionModel()->setCurrentIndex(row < 0 ? QModelIndex() : RowIndex(row), QItemSelectionModel::NoUpdate);
}

void ListView::EnsureVisible(int row)
{
    scrollTo(RowIndex(row));
}

int ListView::TopRow() const
{
    return rowAt(0);
}

void ListView::SetTopRow(int row)
{
    verticalScrollBar()->setValue(row); // rows scroll one by one
}

QRect ListView::RowRect(int row) const
{
    return {viewport()->x(), viewport()->y() + rowViewportPosition(row), viewport()->width(), rowHeight(row)};
}

MessageResult ListView::HandleMessage(quint32 message, quintptr /*wParam*/, qintptr /*lParam*/)
{
    return message == LVM_GETSELECTEDCOUNT ? static_cast<MessageResult>(SelectedRows().size()) : 0;
}

bool ListView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == horizontalHeader()->viewport() && event->type() == QEvent::MouseButtonPress)
        SendMessageA(Handle(), WM_PARENTNOTIFY, 0, 0);
    return QTableView::eventFilter(watched, event);
}

/// In single selection the selected row stays selected: neither a click below the rows nor Ctrl with a click changes
/// that.
QItemSelectionModel::SelectionFlags ListView::selectionCommand(const QModelIndex& index, const QEvent* event) const
{
    if (selectionMode() != SingleSelection)
        return QTableView::selectionCommand(index, event);
    return index.isValid() ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
                           : QItemSelectionModel::SelectionFlags(QItemSelectionModel::NoUpdate);
}

void ListView::keyPressEvent(QKeyEvent* event)
{
    if (IsAltLetter(*event)) {
        event->ignore();
        return;
    }
    Q_EMIT KeyDown(event->key());
    const int before = currentIndex().row();
    if (event->matches(QKeySequence::SelectAll))
        Q_EMIT KeyPress(ctrlA);
    else
        QTableView::keyPressEvent(event);
    TellRowChange(before);
}

void ListView::keyboardSearch(const QString& text)
{
    if (mTypeToFind)
        QTableView::keyboardSearch(text);
}

/// Home and End go to the first and last row; the toolkit would go to the first and last column.
QModelIndex ListView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const int lastRow = mItems->RowCount() - 1;
    if (lastRow >= 0 && action == MoveHome)
        return RowIndex(0);
    if (lastRow >= 0 && action == MoveEnd)
        return RowIndex(lastRow);
    return QTableView::moveCursor(action, modifiers);
}

void ListView::resizeEvent(QResizeEvent* event)
{
    QTableView::resizeEvent(event);
    Q_EMIT Resized();
}

void ListView::contextMenuEvent(QContextMenuEvent* event)
{
    const bool atRow = event->reason() == QContextMenuEvent::Keyboard && SelectedItem() >= 0;
    Q_EMIT ContextMenu(atRow ? mapToGlobal(RowRect(SelectedItem()).bottomLeft()) : event->globalPos());
}

void ListView::mousePressEvent(QMouseEvent* event)
{
    mRowBeforePress = currentIndex().row();
    mClicked = false;
    QTableView::mousePressEvent(event);
}

/// A row can also be reached without a click on it: by dragging, or with another button.
void ListView::mouseReleaseEvent(QMouseEvent* event)
{
    QTableView::mouseReleaseEvent(event);
    if (!mClicked)
        TellRowChange(mRowBeforePress);
    Q_EMIT MouseUp();
}

void ListView::TellRowChange(int before)
{
    const int row = currentIndex().row();
    if (row >= 0 && row != before)
        Q_EMIT ItemClick(row);
}

} // namespace qor
