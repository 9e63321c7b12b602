// The rows and columns of a list view. The rows are the model; there is no other copy of them.
#pragma once

#include "platform/runtime/Text.h"

#include <functional>
#include <optional>
#include <QAbstractTableModel>
#include <QColor>
#include <QSet>
#include <QStringList>
#include <utility>
#include <vector>

namespace qor {

/// One row: its own text in texts[0] followed by its sub-items, a key that no other row has, a colour per text (none is
/// the default colour).
struct ListRow
{
    QString key;
    QStringList texts;
    std::vector<std::optional<QColor>> colours;

    bool operator==(const ListRow&) const = default;
};

/// The text of a cell, whether its column is shown or not.
inline constexpr int plainTextRole = Qt::UserRole;

enum class SortOrder { Ascending = 0, Descending = 1 };

/// What a list is sorted by.
struct SortSettings
{
    bool sorted = false;
    int key = 0;
    SortOrder order = SortOrder::Ascending;

    bool operator==(const SortSettings&) const = default;
};

/// Rows and columns count from 0; column 0 shows a row's own text, column i its sub-item i. A row that does not exist,
/// and a key in use, raise RuntimeError.
class ListItems : public QAbstractTableModel
{
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;

    int RowCount() const { return static_cast<int>(mRows.size()); }
    void Clear();
    /// Appends rows in one step.
    void Append(std::vector<ListRow> rows) { Insert(RowCount(), std::move(rows)); }
    /// Inserts rows before `position`, or at the end when it is the row count, in one step.
    void Insert(int position, std::vector<ListRow> rows);
    /// Removes these rows, given in ascending order without repetition. Scattered rows reset the model.
    void Remove(const std::vector<int>& rows);

    const QString& Key(int row) const { return At(row).key; }
    void SetKey(int row, const QString& key);
    /// The row with this key, or -1.
    int RowOfKey(const QString& key) const;

    /// A sub-item that the row does not have is the empty text.
    QString Text(int row, int subItem) const;
    /// Sets a text; the row gets the sub-items up to this one that it lacks.
    void SetText(int row, int subItem, const QString& text);

    std::optional<QColor> ForeColor(int row, int subItem) const;
    void SetForeColor(int row, int subItem, const QColor& colour);

    int ColumnCount() const { return static_cast<int>(mColumns.size()); }
    void ClearColumns();
    /// A column that is not shown gives out neither its texts nor its header for display: a screen reader would read
    /// them.
    void AddColumn(const QString& text, bool isShown = true);
    void RemoveLastColumn();

    /// While the list is sorted, setting any of the three sorts it once, stably and ignoring case. Rows added or
    /// changed later stay where they were put.
    bool Sorted() const { return mSort.sorted; }
    void SetSorted(bool sorted);
    int SortKey() const { return mSort.key; }
    void SetSortKey(int subItem);
    SortOrder Order() const { return mSort.order; }
    void SetOrder(SortOrder order);

    const std::vector<ListRow>& Rows() const { return mRows; }
    const SortSettings& Sorting() const { return mSort; }
    /// Puts back rows and settings that were taken from here earlier; nothing is sorted.
    void Restore(std::vector<ListRow> rows, const SortSettings& sort);

    /// What a row's tool tip and a screen reader say about it; empty for nothing.
    void SetRowNote(std::function<QString(int row)> note) { mRowNote = std::move(note); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Column
    {
        QString text;
        bool isShown;
    };

    bool IsShown(int column) const { return column < ColumnCount() && mColumns[column].isShown; }
    const ListRow& At(int row) const;
    ListRow& At(int row);
    void RequireRow(int row) const;
    static void AddUniqueKey(QSet<QString>& keys, const QString& key);
    void Sort();

    std::vector<ListRow> mRows;
    QSet<QString> mKeys;
    QList<Column> mColumns;
    SortSettings mSort;
    std::function<QString(int row)> mRowNote;
};

} // namespace qor
