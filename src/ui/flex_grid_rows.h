#pragma once

#include <QAbstractProxyModel>
#include <functional>
#include <vector>

namespace orvanta {

/// The rows of a `FlexGrid`: the records of a model, sorted, without those that a search hides. Rows are
/// counted from 1 in the sorted order, and hidden ones count too; row 0 is the header. The view has only the
/// shown rows, counted from 0.
class FlexGridRows : public QAbstractProxyModel {
  Q_OBJECT

 public:
  static constexpr int TextRole = Qt::UserRole;       ///< a cell's whole text
  static constexpr int ValueRole = Qt::UserRole + 1;  ///< the cell's number, a double

  FlexGridRows(QAbstractItemModel* records, QObject* parent);

  /// The header and all records.
  int rows() const { return static_cast<int>(m_order.size()) + 1; }
  /// The records from row 1 on.
  const std::vector<int>& order() const { return m_order; }
  /// The record in a row; -1 for the header and for a row that does not exist.
  int record(int row) const;
  /// The view's row for a row that is shown; -1 for others.
  int viewRow(int row) const;
  /// The first shown row from `row` on, as the view counts.
  int viewRowFrom(int row) const;
  /// The row that the view shows as `viewRow`; 0, the header, where it shows none.
  int row(int viewRow) const;

  /// Sorts by the role of a column: `ValueRole`, or `TextRole` by code point without regard to case. Equal
  /// rows keep their order. Hidden ones are sorted too.
  void sortBy(int column, int role, Qt::SortOrder direction);
  /// Hides every record except the `wanted` ones.
  void showOnly(const std::function<bool(int record)>& wanted);

  QModelIndex mapToSource(const QModelIndex& shown) const override;
  QModelIndex mapFromSource(const QModelIndex& of) const override;
  QModelIndex index(int viewRow, int column, const QModelIndex& parent = {}) const override {
    return hasIndex(viewRow, column, parent) ? createIndex(viewRow, column) : QModelIndex();
  }
  QModelIndex parent(const QModelIndex&) const override { return {}; }
  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
  }
  int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : sourceModel()->columnCount();
  }

 private:
  void takeRecords();
  void rearrange(const std::function<void()>& change);
  std::vector<int> shownRows() const;

  std::vector<int> m_order;
  std::vector<bool> m_hidden;  // by record
  std::vector<int> m_shown;    // the view's rows, in its order
};

}  // namespace orvanta
