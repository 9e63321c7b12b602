#include "platform/ui/NumberListModel.h"

namespace qor {

void NumberListModel::SetRange(int first, int last)
{
    beginResetModel();
    mFirst = first;
    mCount = qMax(0, last - first + 1);
    endResetModel();
}

int NumberListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : mCount;
}

QVariant NumberListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    return role == Qt::DisplayRole || role == Qt::EditRole ? QString::number(mFirst + index.row()) : QVariant();
}

QModelIndexList NumberListModel::match(const QModelIndex& start, int role, const QVariant& value, int hits,
                                       Qt::MatchFlags flags) const
{
    constexpr Qt::MatchFlags matchType = Qt::MatchFlag(0x0F);
    if ((flags & matchType) != Qt::MatchExactly && (flags & matchType) != Qt::MatchFixedString)
        return QAbstractListModel::match(start, role, value, hits, flags);
    const QString text = value.toString();
    bool ok = false;
    const int row = text.toInt(&ok) - mFirst;
    if (!ok || row < 0 || row >= mCount || text != QString::number(mFirst + row))
        return {};
    return {index(row)};
}

} // namespace qor
