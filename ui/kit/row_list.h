// A list for views, given as a whole and changed as little as possible.
#pragma once

#include <QAbstractListModel>
#include <QVariantMap>

namespace norvane {

/// A row is a map from role names to values.
class RowList : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    explicit RowList(const QList<QByteArray>& roles);

    /// Rows at the beginning and at the end that stay as they were keep their delegates, and with them the
    /// keyboard's focus.
    void set(const QList<QVariantMap>& rows);

    [[nodiscard]] int count() const { return static_cast<int>(rows_.size()); }
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override { return roles_; }

Q_SIGNALS:
    void countChanged();

private:
    QHash<int, QByteArray> roles_;
    QList<QVariantMap> rows_;
};

} // namespace norvane
