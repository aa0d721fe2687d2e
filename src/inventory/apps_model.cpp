#include "inventory/apps_model.h"

#include "text/bilingual.h"
#include "ui/flex_grid_rows.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr qsizetype longestShown = 400;

/// A cell's text as painted and spoken: without the line ends that tools leave in it, and bounded.
QString shownText(const QString& text) {
  QString shown = text.left(longestShown);
  for (QChar& c : shown) {
    if (c.category() == QChar::Other_Control) c = u' ';
  }
  return shown.trimmed();
}

}  // namespace

AppsModel::AppsModel(QObject* parent) : QAbstractTableModel(parent), m_cog(u":/grid/cog.png"_s) {}

void AppsModel::setApps(const QList<InventoryApp>& apps) {
  beginResetModel();
  m_records.assign(static_cast<size_t>(apps.size()), {});
  auto record = m_records.begin();
  for (const InventoryApp& app : apps) {
    for (size_t column = 0; column < app.size(); ++column)
      (*record)[column] = {app[column].toString(), cellValue(columns[column].kind, app[column])};
    ++record;
  }
  endResetModel();
}

void AppsModel::setOrder(const std::vector<int>& order) {
  int number = 0;
  for (const int record : order) {
    ++number;
    m_records[static_cast<size_t>(record)][ColOrder] = {QString::number(number), static_cast<double>(number)};
  }
  if (number > 0) Q_EMIT dataChanged(index(0, ColOrder), index(number - 1, ColOrder));
}

QVariant AppsModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const AppCell& of = cell(index.row(), index.column());
  const bool menu = index.column() == ColMenuIcon;
  switch (role) {
    case FlexGridRows::TextRole:
      return of.text;
    case FlexGridRows::ValueRole:
      return of.value;
    case Qt::DisplayRole:
      return shownText(of.text);
    case Qt::AccessibleTextRole:
      return menu ? inFace(u"菜单"_s, u"Menu"_s) : shownText(of.text);
    case Qt::DecorationRole:
      return menu ? QVariant(m_cog) : QVariant();
    case Qt::TextAlignmentRole:
      return headerData(index.column(), Qt::Horizontal, role);
    default:
      return {};
  }
}

QVariant AppsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= inventoryColumns) return {};
  if (role == Qt::DisplayRole) return columns[section].heading.shown();
  if (role == Qt::TextAlignmentRole)
    return QVariant::fromValue(columns[section].alignment | Qt::AlignVCenter);
  return {};
}

}  // namespace orvanta
