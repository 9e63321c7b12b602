#include "platform/ui/ListItems.h"

#include "platform/runtime/RuntimeError.h"

#include <algorithm>
#include <iterator>
#include <numeric>

namespace qor {

void ListItems::RequireRow(int row) const
{
    if (row < 0 || row >= RowCount())
        throw RuntimeError(ErrorNumber::ObjectNotSet, u"No row of the list is selected. Select a row first."_s);
}

const ListRow& ListItems::At(int row) const
{
    RequireRow(row);
    return mRows[static_cast<std::size_t>(row)];
}

ListRow& ListItems::At(int row)
{
    RequireRow(row);
    return mRows[static_cast<std::size_t>(row)];
}

void ListItems::AddUniqueKey(QSet<QString>& keys, const QString& key)
{
    if (keys.contains(key)) {
        throw RuntimeError(ErrorNumber::KeyNotUnique, u"The key \"%1\" belongs to another row of the list."_s.arg(key));
    }
    keys.insert(key);
}

void ListItems::Clear()
{
    if (mRows.empty())
        return;
    beginResetModel();
    mRows.clear();
    mKeys.clear();
    endResetModel();
}

void ListItems::Insert(int position, std::vector<ListRow> rows)
{
    if (position != RowCount())
        RequireRow(position);
    if (rows.empty())
        return;
    QSet<QString> keys = mKeys; // a copy, so that a refused call changes nothing
    for (const ListRow& row : rows)
        AddUniqueKey(keys, row.key);
    mKeys = std::move(keys);
    beginInsertRows({}, position, position + static_cast<int>(rows.size()) - 1);
    mRows.insert(mRows.begin() + position, std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
    endInsertRows();
}

void ListItems::Remove(const std::vector<int>& rows)
{
    if (rows.empty())
        return;
    for (const int row : rows)
        RequireRow(row);
    for (const int row : rows)
        mKeys.remove(At(row).key);
    const int first = rows.front();
    const int last = rows.back();
    const bool oneSpan = last - first + 1 == static_cast<int>(rows.size());
    // Scattered rows reset the model: telling the view about each one would cost a pass over all rows every time.
    if (oneSpan)
        beginRemoveRows({}, first, last);
    else
        beginResetModel();
    auto removed = rows.begin();
    int row = 0;
    std::erase_if(mRows, [&](const ListRow&) {
        const bool remove = removed != rows.end() && *removed == row++;
        if (remove)
            ++removed;
        return remove;
    });
    if (oneSpan)
        endRemoveRows();
    else
        endResetModel();
}

void ListItems::SetKey(int row, const QString& key)
{
    ListRow& changed = At(row);
    if (changed.key == key)
        return;
    AddUniqueKey(mKeys, key);
    mKeys.remove(changed.key);
    changed.key = key;
}

int ListItems::RowOfKey(const QString& key) const
{
    const auto row = std::ranges::find(mRows, key, &ListRow::key);
    return row == mRows.end() ? -1 : static_cast<int>(row - mRows.begin());
}

QString ListItems::Text(int row, int subItem) const
{
    return At(row).texts.value(subItem);
}

void ListItems::SetText(int row, int subItem, const QString& text)
{
    QStringList& texts = At(row).texts;
    while (texts.size() <= subItem)
        texts << QString();
    if (texts[subItem] == text)
        return;
    texts[subItem] = text;
    if (subItem < ColumnCount())
        Q_EMIT dataChanged(index(row, subItem), index(row, subItem), {Qt::DisplayRole});
}

std::optional<QColor> ListItems::ForeColor(int row, int subItem) const
{
    const auto& colours = At(row).colours;
    const auto at = static_cast<std::size_t>(subItem);
    return at < colours.size() ? colours[at] : std::nullopt;
}

void ListItems::SetForeColor(int row, int subItem, const QColor& colour)
{
    auto& colours = At(row).colours;
    const auto at = static_cast<std::size_t>(subItem);
    if (at >= colours.size())
        colours.resize(at + 1);
    if (colours[at] == colour)
        return;
    colours[at] = colour;
    if (subItem < ColumnCount())
        Q_EMIT dataChanged(index(row, subItem), index(row, subItem), {Qt::ForegroundRole});
}

void ListItems::ClearColumns()
{
    if (mColumns.isEmpty())
        return;
    beginRemoveColumns({}, 0, ColumnCount() - 1);
    mColumns.clear();
    endRemoveColumns();
}

void ListItems::AddColumn(const QString& text, bool isShown)
{
    beginInsertColumns({}, ColumnCount(), ColumnCount());
    mColumns << Column{text, isShown};
    endInsertColumns();
}

void ListItems::RemoveLastColumn()
{
    beginRemoveColumns({}, ColumnCount() - 1, ColumnCount() - 1);
    mColumns.removeLast();
    endRemoveColumns();
}

void ListItems::SetSorted(bool sorted)
{
    mSort.sorted = sorted;
    Sort();
}

void ListItems::SetSortKey(int subItem)
{
    mSort.key = subItem;
    Sort();
}

void ListItems::SetOrder(SortOrder order)
{
    mSort.order = order;
    Sort();
}

void ListItems::Sort()
{
    if (!mSort.sorted || mRows.empty())
        return;
    std::vector<QString> keys;
    keys.reserve(mRows.size());
    for (const ListRow& row : mRows)
        keys.push_back(row.texts.value(mSort.key).toCaseFolded());

    std::vector<std::size_t> order(mRows.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const bool ascending = mSort.order == SortOrder::Ascending;
    std::ranges::stable_sort(order, [&](std::size_t left, std::size_t right) {
        return ascending ? keys[left] < keys[right] : keys[right] < keys[left];
    });

    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    std::vector<ListRow> sorted;
    std::vector<int> newRow(mRows.size());
    sorted.reserve(mRows.size());
    for (const std::size_t old : order) {
        newRow[old] = static_cast<int>(sorted.size());
        sorted.push_back(std::move(mRows[old]));
    }
    mRows = std::move(sorted);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    after.reserve(before.size());
    for (const QModelIndex& old : before)
        after << index(newRow[static_cast<std::size_t>(old.row())], old.column());
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void ListItems::Restore(std::vector<ListRow> rows, const SortSettings& sort)
{
    beginResetModel();
    mRows = std::move(rows);
    mSort = sort;
    mKeys.clear();
    for (const ListRow& row : mRows)
        mKeys.insert(row.key);
    endResetModel();
}

int ListItems::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : RowCount();
}

int ListItems::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount();
}

QVariant ListItems::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    // No display text for a hidden column: a screen reader falls back on it when the accessible text is empty.
    if (role == plainTextRole || (role == Qt::DisplayRole && IsShown(index.column())))
        return Text(index.row(), index.column());
    if (role == Qt::ForegroundRole) {
        const auto colour = ForeColor(index.row(), index.column());
        return colour ? QVariant(*colour) : QVariant();
    }
    if ((role == Qt::ToolTipRole || role == Qt::AccessibleDescriptionRole) && mRowNote)
        return mRowNote(index.row());
    return {};
}

QVariant ListItems::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount())
        return {};
    if (role == Qt::DisplayRole)
        return IsShown(section) ? mColumns[section].text : QString();
    return role == Qt::TextAlignmentRole ? QVariant(Qt::AlignLeft | Qt::AlignVCenter) : QVariant();
}

} // namespace qor
