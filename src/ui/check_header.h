#pragma once

#include <QHeaderView>
#include <functional>

namespace orvanta {

/// The left edge of a table: a check box for each row.
class CheckHeader : public QHeaderView {
  Q_OBJECT

 public:
  explicit CheckHeader(QWidget* parent);

  /// Whether a row of the view is checked.
  std::function<bool(int viewRow)> isChecked = {};

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
