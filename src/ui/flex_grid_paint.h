#pragma once

#include <QHeaderView>
#include <QStyledItemDelegate>

namespace orvanta {

/// Paints the cells of a `FlexGrid`: flat, a fine line below each row, the row of the current cell tinted.
class FlexGridDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

/// The header row of a `FlexGrid`, on the same ground as the rows, with an arrow at the sorted column.
class FlexGridHeader : public QHeaderView {
  Q_OBJECT

 public:
  /// The arrow's share of the sorted column's width, in pixels.
  static constexpr int arrowRoom = 12;

  explicit FlexGridHeader(QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void paintSection(QPainter* painter, const QRect& rect, int column) const override;
};

}  // namespace orvanta
