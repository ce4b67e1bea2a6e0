#pragma once

#include <QAbstractListModel>
#include <QByteArray>
#include <QHash>
#include <QList>
#include <QVariant>

#include <vector>

namespace kestrum {

// A list the review views show (filter rows, speeds, scoreboard rows, dragon slots, victims): rows of
// values under fixed role names, all decided by the object that owns the model. Setting rows of the same
// count reports only the rows that changed, so delegates stay and bindings update in place; another count
// resets the model.
//
// Threads: the main thread, like the views that read it.
class ReviewRowListModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

  public:
    using Row = QList<QVariant>;  // one value per role, in the order of the role names

    explicit ReviewRowListModel(QList<QByteArray> roleNames, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return static_cast<int>(rows_.size()); }
    const std::vector<Row>& rows() const { return rows_; }
    // The value of role `roleName` in row `row`; invalid when either is unknown. For a view that pairs the
    // rows of two lists by index, and for tests.
    Q_INVOKABLE QVariant value(int row, const QString& roleName) const;

    void setRows(std::vector<Row> rows);

  signals:
    void countChanged();

  private:
    QList<QByteArray> roleNames_;
    std::vector<Row> rows_;  // main thread
};

}  // namespace kestrum
