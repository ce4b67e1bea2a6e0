#include "core/review/ReviewRowListModel.h"

#include <utility>

namespace kestrum {

ReviewRowListModel::ReviewRowListModel(QList<QByteArray> roleNames, QObject* parent)
    : QAbstractListModel(parent), roleNames_(std::move(roleNames)) {}

int ReviewRowListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant ReviewRowListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() < 0 || index.row() >= count()) return {};
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    const int column = role - Qt::UserRole;
    if (column < 0 || column >= row.size()) return {};
    return row[column];
}

QHash<int, QByteArray> ReviewRowListModel::roleNames() const {
    QHash<int, QByteArray> names;
    for (int column = 0; column < roleNames_.size(); ++column)
        names.insert(Qt::UserRole + column, roleNames_[column]);
    return names;
}

QVariant ReviewRowListModel::value(int row, const QString& roleName) const {
    const qsizetype column = roleNames_.indexOf(roleName.toUtf8());
    if (row < 0 || row >= count() || column < 0) return {};
    return data(index(row), Qt::UserRole + static_cast<int>(column));
}

void ReviewRowListModel::setRows(std::vector<Row> rows) {
    if (rows.size() != rows_.size()) {
        beginResetModel();
        rows_ = std::move(rows);
        endResetModel();
        emit countChanged();
        return;
    }
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (rows[row] == rows_[row]) continue;
        rows_[row] = std::move(rows[row]);
        const QModelIndex changed = index(static_cast<int>(row));
        emit dataChanged(changed, changed);
    }
}

}  // namespace kestrum
