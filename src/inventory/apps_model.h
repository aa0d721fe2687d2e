#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <vector>

#include "inventory/parser.h"

namespace orvanta {

/// A cell: the text as the script printed it, and its number if the column is sorted by one.
struct AppCell {
  QString text;
  double value = 0;
};

/// The apps, one record each, with the columns of the inventory.
class AppsModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit AppsModel(QObject* parent);

  /// Replaces the apps.
  void setApps(const QList<InventoryApp>& apps);
  /// Numbers the records in the column for it: `order` has them from number 1 on.
  void setOrder(const std::vector<int>& order);

  const AppCell& cell(int record, int column) const {
    return m_records[static_cast<size_t>(record)][static_cast<size_t>(column)];
  }

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(m_records.size());
  }
  int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : inventoryColumns;
  }
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  using Record = std::array<AppCell, inventoryColumns>;

  std::vector<Record> m_records;
  QIcon m_cog;
};

}  // namespace orvanta
