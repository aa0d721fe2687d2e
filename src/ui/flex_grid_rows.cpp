#include "ui/flex_grid_rows.h"

#include <algorithm>
#include <numeric>

namespace orvanta {

namespace {

template <typename Key>
void sortRecords(std::vector<int>& order, const std::vector<Key>& keys, Qt::SortOrder direction) {
  std::stable_sort(order.begin(), order.end(), [&keys, direction](int a, int b) {
    if (direction == Qt::DescendingOrder) std::swap(a, b);
    return keys[static_cast<size_t>(a)] < keys[static_cast<size_t>(b)];
  });
}

}  // namespace

FlexGridRows::FlexGridRows(QAbstractItemModel* records, QObject* parent) : QAbstractProxyModel(parent) {
  setSourceModel(records);
  takeRecords();
  connect(records, &QAbstractItemModel::modelAboutToBeReset, this, [this] { beginResetModel(); });
  connect(records, &QAbstractItemModel::modelReset, this, [this] {
    takeRecords();
    endResetModel();
  });
  connect(records, &QAbstractItemModel::dataChanged, this,
          [this](const QModelIndex& from, const QModelIndex& to) {
            if (rowCount() > 0)
              Q_EMIT dataChanged(index(0, from.column()), index(rowCount() - 1, to.column()));
          });
}

void FlexGridRows::takeRecords() {
  const auto count = static_cast<size_t>(sourceModel()->rowCount());
  m_order.resize(count);
  std::iota(m_order.begin(), m_order.end(), 0);
  m_hidden.assign(count, false);
  m_shown = shownRows();
}

std::vector<int> FlexGridRows::shownRows() const {
  std::vector<int> shown;
  for (int row = 1; row < rows(); ++row) {
    if (!m_hidden[static_cast<size_t>(record(row))]) shown.push_back(row);
  }
  return shown;
}

/// Removes all rows and inserts those to be shown: two signals, however many rows move.
void FlexGridRows::rearrange(const std::function<void()>& change) {
  if (!m_shown.empty()) {
    beginRemoveRows({}, 0, rowCount() - 1);
    m_shown.clear();
    endRemoveRows();
  }
  change();
  std::vector<int> shown = shownRows();
  if (shown.empty()) return;
  beginInsertRows({}, 0, static_cast<int>(shown.size()) - 1);
  m_shown = std::move(shown);
  endInsertRows();
}

void FlexGridRows::sortBy(int column, int role, Qt::SortOrder direction) {
  std::vector<double> values;
  std::vector<QList<uint>> texts;
  for (int record = 0; record < sourceModel()->rowCount(); ++record) {
    const QVariant key = sourceModel()->index(record, column).data(role);
    if (role == ValueRole) {
      values.push_back(key.toDouble());
    } else {
      texts.push_back(key.toString().toCaseFolded().toUcs4());
    }
  }
  rearrange([&] {
    if (role == ValueRole) {
      sortRecords(m_order, values, direction);
    } else {
      sortRecords(m_order, texts, direction);
    }
  });
}

void FlexGridRows::showOnly(const std::function<bool(int record)>& wanted) {
  std::vector<bool> hidden;
  for (size_t record = 0; record < m_hidden.size(); ++record)
    hidden.push_back(!wanted(static_cast<int>(record)));
  rearrange([&] { m_hidden = std::move(hidden); });
}

int FlexGridRows::record(int row) const {
  return row > 0 && row < rows() ? m_order[static_cast<size_t>(row) - 1] : -1;
}

int FlexGridRows::viewRow(int row) const {
  const int from = viewRowFrom(row);
  return from < rowCount() && m_shown[static_cast<size_t>(from)] == row ? from : -1;
}

int FlexGridRows::viewRowFrom(int row) const {
  return static_cast<int>(std::lower_bound(m_shown.begin(), m_shown.end(), row) - m_shown.begin());
}

int FlexGridRows::row(int viewRow) const {
  return viewRow >= 0 && viewRow < rowCount() ? m_shown[static_cast<size_t>(viewRow)] : 0;
}

QModelIndex FlexGridRows::mapToSource(const QModelIndex& shown) const {
  return shown.isValid() ? sourceModel()->index(record(row(shown.row())), shown.column()) : QModelIndex();
}

QModelIndex FlexGridRows::mapFromSource(const QModelIndex& of) const {
  if (!of.isValid()) return {};
  const auto place = std::find(m_order.begin(), m_order.end(), of.row());
  return index(viewRow(static_cast<int>(place - m_order.begin()) + 1), of.column());
}

}  // namespace orvanta
