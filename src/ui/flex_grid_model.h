#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <vector>

#include "ui/color.h"

namespace orvanta {

/// The cells of a `FlexGrid`. Row 0 is the header; the view sees it as such, and of the other rows those that
/// are not hidden. While it is frozen, changes do not reach the view.
class FlexGridModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  static constexpr int OwnColorRole = Qt::UserRole;  ///< the cell's own ground, a FormColor

  explicit FlexGridModel(QObject* parent);

  int rows() const { return static_cast<int>(m_rows.size()); }
  int columns() const { return m_columns; }
  void setRows(int rows);
  void setColumns(int columns);

  QString text(int row, int column) const;
  void setText(int row, int column, const QString& text);
  bool isHidden(int row) const;
  void setHidden(int row, bool hidden);
  void setPicture(int row, int column, const QIcon& picture);
  /// The own ground of one cell; `systemWindow` gives it back the grid's.
  void setColor(int row, int column, FormColor color);
  FormColor color(int row, int column) const;
  void setAlignment(int column, Qt::Alignment alignment);

  /// Sorts all rows below the header, hidden ones too; equal ones keep their order.
  void sortRows(int column, bool numeric, bool descending);

  void freeze();
  void thaw();

  /// The view's row for a row that is not hidden and not the header; -1 for others.
  int viewRow(int row) const;
  /// The row that the view shows as `viewRow`; 0, the header, for -1.
  int row(int viewRow) const;
  /// The first row from `row` on that is not hidden, as the view counts.
  int viewRowFrom(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  struct Row {
    QStringList cells;
    bool hidden = false;
    int pictureColumn = -1;
    QIcon picture;
  };

  bool exists(int row, int column) const;
  QVariant cellData(int row, int column, int role) const;
  void rowsChanged();
  void noteChange(int row, int column);

  std::vector<Row> m_rows;
  std::vector<int> m_shown;  // rows that the view has, in its order
  std::vector<Qt::Alignment> m_alignments;
  QHash<std::pair<int, int>, FormColor> m_colors;
  int m_columns = 0;
  bool m_frozen = false;
  bool m_changed = false;  // while frozen
};

}  // namespace orvanta
