#include "ui/save_button.h"

#include <QPainter>
#include <QPainterPath>

#include "ui/worded.h"

namespace orvanta {

SaveButton::SaveButton(const QString& designName, const Text& name, QWidget* parent)
    : Button(designName, {}, {}, parent) {
  worded(this, [this, name] {
    setToolTip(name.shown());
    setAccessibleName(name.shown());
  });
}

void SaveButton::paintEvent(QPaintEvent* event) {
  Button::paintEvent(event);
  QPainterPath tray;
  tray.moveTo(2.5, 9.5);
  tray.lineTo(2.5, 13.5);
  tray.lineTo(13.5, 13.5);
  tray.lineTo(13.5, 9.5);
  QPainterPath arrow;
  arrow.moveTo(8, 2);
  arrow.lineTo(8, 10);
  arrow.moveTo(4.8, 7);
  arrow.lineTo(8, 10.2);
  arrow.lineTo(11.2, 7);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(QRectF(rect()).center() - QPointF(8, 8));
  const QColor ink = palette().color(QPalette::ButtonText);
  painter.setPen(QPen(ink, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(tray);
  painter.drawPath(arrow);
}

}  // namespace orvanta
