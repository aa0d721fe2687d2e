#pragma once

#include <QHeaderView>
#include <QIcon>
#include <functional>

namespace orvanta {

/// The left edge of a table: a check box for each row, and an icon beside it.
class CheckHeader : public QHeaderView {
  Q_OBJECT

 public:
  explicit CheckHeader(QWidget* parent);

  /// Whether a row of the view is checked.
  std::function<bool(int viewRow)> isChecked = {};
  /// The icon of a row; null for none.
  std::function<QIcon(int viewRow)> iconOf = {};

  /// Makes room for icons, or takes it away.
  void showIcons(bool shown);
  /// The part of a row's area that has the box.
  static QRect boxArea(const QRect& row);

 Q_SIGNALS:
  void toggled(int viewRow);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void paintSection(QPainter* painter, const QRect& rect, int viewRow) const override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
  void mouseMoveEvent(QMouseEvent*) override {}
  void mouseReleaseEvent(QMouseEvent*) override {}
};

}  // namespace orvanta
