#include "ui/kit/row_list.h"

#include <algorithm>

namespace norvane {

RowList::RowList(const QList<QByteArray>& roles) {
    for (const QByteArray& role : roles)
        roles_.insert(Qt::UserRole + static_cast<int>(roles_.size()), role);
}

void RowList::set(const QList<QVariantMap>& rows) {
    const auto before = static_cast<int>(rows_.size());
    const auto after = static_cast<int>(rows.size());
    const int common = std::min(before, after);
    int first = 0;
    while (first < common && rows_[first] == rows[first])
        ++first;
    int last = 0; // counted from the end
    while (last < common - first && rows_[before - 1 - last] == rows[after - 1 - last])
        ++last;
    const int changed = common - first - last;
    if (after > before)
        beginInsertRows({}, first + changed, first + changed + after - before - 1);
    else if (after < before)
        beginRemoveRows({}, first + changed, first + changed + before - after - 1);
    rows_ = rows;
    if (after > before)
        endInsertRows();
    else if (after < before)
        endRemoveRows();
    if (changed > 0)
        Q_EMIT dataChanged(index(first), index(first + changed - 1));
    if (after != before)
        Q_EMIT countChanged();
}

int RowList::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

QVariant RowList::data(const QModelIndex& index, int role) const {
    return rows_.value(index.row()).value(QString::fromLatin1(roles_.value(role)));
}

} // namespace norvane
