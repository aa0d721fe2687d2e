#include "ui/flex_grid_model.h"

#include <QHash>
#include <algorithm>
#include <numeric>

namespace orvanta {

namespace {

constexpr qsizetype longestShown = 400;

/// A cell's text as it is painted and spoken: without the line ends that tools leave in it, and not longer
/// than anybody reads.
QString shownText(const QString& text) {
  QString shown = text.left(longestShown);
  for (QChar& c : shown) {
    if (c.category() == QChar::Other_Control) c = u' ';
  }
  return shown.trimmed();
}

/// Where a code unit stands in the order of code points.
int codePointRank(QChar c) {
  const int unit = c.unicode();
  if (unit >= 0xE000) return unit - 0x800;
  return unit >= 0xD800 ? unit + 0x2000 : unit;
}

bool codePointsLess(const QString& a, const QString& b) {
  const auto [left, right] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
  if (right == b.end()) return false;
  return left == a.end() || codePointRank(*left) < codePointRank(*right);
}

/// The number that a text begins with, else 0.
double leadingNumber(const QString& text) {
  qsizetype end = 0;
  bool point = false;
  while (end < text.size() && text[end].isSpace()) ++end;
  if (end < text.size() && (text[end] == u'-' || text[end] == u'+')) ++end;
  for (; end < text.size(); ++end) {
    const QChar c = text[end];
    if (c == u'.' && !point) {
      point = true;
    } else if (c < u'0' || c > u'9') {
      break;
    }
  }
  return QStringView(text).left(end).trimmed().toDouble();
}

/// The order of rows 1 and up by their keys: the numbers of the rows, in the new order.
template <typename Key, typename Less>
std::vector<size_t> orderBy(const std::vector<Key>& keys, bool descending, Less less) {
  std::vector<size_t> order(keys.size());
  std::iota(order.begin(), order.end(), size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) {
    return descending ? less(keys[b], keys[a]) : less(keys[a], keys[b]);
  });
  return order;
}

}  // namespace

FlexGridModel::FlexGridModel(QObject* parent) : QAbstractTableModel(parent) {}

bool FlexGridModel::exists(int row, int column) const {
  return row >= 0 && row < rows() && column >= 0 && column < m_columns;
}

void FlexGridModel::setRows(int rows) {
  const int before = this->rows();
  m_rows.resize(static_cast<size_t>(std::max(rows, 0)));
  if (rows < before) m_colors.removeIf([rows](const auto& cell) { return cell.key().first >= rows; });
  rowsChanged();
}

void FlexGridModel::setColumns(int columns) {
  m_columns = std::max(columns, 0);
  m_alignments.resize(static_cast<size_t>(m_columns), Qt::AlignLeft | Qt::AlignVCenter);
  rowsChanged();
}

QString FlexGridModel::text(int row, int column) const {
  if (!exists(row, column)) return {};
  return m_rows[static_cast<size_t>(row)].cells.value(column);
}

void FlexGridModel::setText(int row, int column, const QString& text) {
  if (!exists(row, column)) return;
  QStringList& cells = m_rows[static_cast<size_t>(row)].cells;
  if (cells.size() <= column) cells.resize(m_columns);
  cells[column] = text;
  noteChange(row, column);
}

bool FlexGridModel::isHidden(int row) const {
  return row >= 0 && row < rows() && m_rows[static_cast<size_t>(row)].hidden;
}

void FlexGridModel::setHidden(int row, bool hidden) {
  if (row < 0 || row >= rows() || isHidden(row) == hidden) return;
  m_rows[static_cast<size_t>(row)].hidden = hidden;
  rowsChanged();
}

void FlexGridModel::setPicture(int row, int column, const QIcon& picture) {
  if (!exists(row, column)) return;
  m_rows[static_cast<size_t>(row)].pictureColumn = column;
  m_rows[static_cast<size_t>(row)].picture = picture;
  noteChange(row, column);
}

void FlexGridModel::setColor(int row, int column, FormColor color) {
  if (!exists(row, column)) return;
  if (color < 0) {
    m_colors.remove({row, column});
  } else {
    m_colors.insert({row, column}, color);
  }
  noteChange(row, column);
}

FormColor FlexGridModel::color(int row, int column) const {
  return m_colors.value({row, column}, -1);
}

void FlexGridModel::setAlignment(int column, Qt::Alignment alignment) {
  if (column < 0 || column >= m_columns) return;
  m_alignments[static_cast<size_t>(column)] = alignment;
  rowsChanged();
}

void FlexGridModel::sortRows(int column, bool numeric, bool descending) {
  if (rows() < 3 || column < 0 || column >= m_columns) return;
  std::vector<size_t> order;
  if (numeric) {
    std::vector<double> keys;
    for (int i = 1; i < rows(); ++i) keys.push_back(leadingNumber(text(i, column)));
    order = orderBy(keys, descending, std::less<>());
  } else {
    std::vector<QString> keys;
    for (int i = 1; i < rows(); ++i) keys.push_back(text(i, column).toCaseFolded());
    order = orderBy(keys, descending, codePointsLess);
  }
  std::vector<Row> sorted;
  sorted.reserve(m_rows.size());
  sorted.push_back(std::move(m_rows.front()));
  for (const size_t i : order) sorted.push_back(std::move(m_rows[i + 1]));
  m_rows = std::move(sorted);
  rowsChanged();
}

void FlexGridModel::freeze() {
  m_frozen = true;
}

void FlexGridModel::thaw() {
  if (!m_frozen) return;
  m_frozen = false;
  if (std::exchange(m_changed, false)) rowsChanged();
}

void FlexGridModel::rowsChanged() {
  if (m_frozen) {
    m_changed = true;
    return;
  }
  beginResetModel();
  m_shown.clear();
  for (int i = 1; i < rows(); ++i) {
    if (!m_rows[static_cast<size_t>(i)].hidden) m_shown.push_back(i);
  }
  endResetModel();
}

void FlexGridModel::noteChange(int row, int column) {
  if (m_frozen) {
    m_changed = true;
  } else if (row == 0) {
    Q_EMIT headerDataChanged(Qt::Horizontal, column, column);
  } else if (const int inView = viewRow(row); inView >= 0) {
    Q_EMIT dataChanged(index(inView, column), index(inView, column));
  }
}

int FlexGridModel::viewRow(int row) const {
  const auto at = std::lower_bound(m_shown.begin(), m_shown.end(), row);
  return at != m_shown.end() && *at == row ? static_cast<int>(at - m_shown.begin()) : -1;
}

int FlexGridModel::viewRowFrom(int row) const {
  return static_cast<int>(std::lower_bound(m_shown.begin(), m_shown.end(), row) - m_shown.begin());
}

int FlexGridModel::row(int viewRow) const {
  return viewRow >= 0 && viewRow < static_cast<int>(m_shown.size()) ? m_shown[static_cast<size_t>(viewRow)]
                                                                    : 0;
}

int FlexGridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int FlexGridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_columns;
}

QVariant FlexGridModel::data(const QModelIndex& index, int role) const {
  return index.isValid() ? cellData(row(index.row()), index.column(), role) : QVariant();
}

QVariant FlexGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  return orientation == Qt::Horizontal ? cellData(0, section, role) : QVariant();
}

QVariant FlexGridModel::cellData(int row, int column, int role) const {
  if (!exists(row, column)) return {};
  const Row& of = m_rows[static_cast<size_t>(row)];
  switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
      return shownText(of.cells.value(column));
    case Qt::TextAlignmentRole:
      return QVariant::fromValue(m_alignments[static_cast<size_t>(column)]);
    case Qt::DecorationRole:
      return of.pictureColumn == column ? QVariant(of.picture) : QVariant();
    case OwnColorRole:
      return color(row, column);
    default:
      return {};
  }
}

}  // namespace orvanta
