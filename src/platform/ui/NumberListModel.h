// A list of consecutive numbers that takes no memory per number.
#pragma once

#include <QAbstractListModel>

namespace qor {

class NumberListModel : public QAbstractListModel
{
    Q_OBJECT
public:
    using QAbstractListModel::QAbstractListModel;

    /// Lists first, first + 1, ... last; an empty list when last is below first.
    void SetRange(int first, int last);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    /// Finds an exact text by arithmetic, without walking the list.
    QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits,
                          Qt::MatchFlags flags) const override;

private:
    int mFirst = 1;
    int mCount = 0;
};

} // namespace qor
