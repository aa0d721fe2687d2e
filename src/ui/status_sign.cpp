#include "ui/status_sign.h"

#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace orvanta {

namespace {

using Sign = Status::Sign;

/// The stroke of `sign`, in a square of 16.
QPainterPath strokeOf(Sign sign) {
  QPainterPath stroke;
  if (sign == Sign::Good) {
    stroke.moveTo(4.6, 8.3);
    stroke.lineTo(7.1, 10.8);
    stroke.lineTo(11.6, 5.6);
  } else if (sign == Sign::Error) {
    stroke.moveTo(5.4, 5.4);
    stroke.lineTo(10.6, 10.6);
    stroke.moveTo(10.6, 5.4);
    stroke.lineTo(5.4, 10.6);
  } else if (sign == Sign::Hint) {
    stroke.moveTo(8, 7.4);
    stroke.lineTo(8, 11.4);
  } else if (sign == Sign::Warning) {
    stroke.moveTo(8, 6.2);
    stroke.lineTo(8, 9.6);
  }
  return stroke;
}

}  // namespace

QColor signColor(Sign sign, const QPalette& palette) {
  const bool dark = palette.color(QPalette::Window).lightness() < 128;
  switch (sign) {
    case Sign::Good:
      return QColor(dark ? 0x4ac26b : 0x1a7f37);
    case Sign::Working:
    case Sign::Hint:
      return palette.color(QPalette::Link);
    case Sign::Warning:
      return QColor(dark ? 0xe3a32b : 0x8f5f00);
    case Sign::Error:
      return QColor(dark ? 0xff7b72 : 0xc62828);
    case Sign::None:
      break;
  }
  return palette.color(QPalette::WindowText);
}

void drawSign(Sign sign, const QRectF& place, const QPalette& palette, QPainter& painter) {
  if (sign == Sign::None) return;
  const QColor color = signColor(sign, palette);
  const QColor inside = palette.color(QPalette::Base);
  painter.save();
  painter.translate(place.topLeft());
  painter.scale(place.width() / 16, place.height() / 16);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  if (sign == Sign::Working) {
    for (const double x : {3.5, 8.0, 12.5}) painter.drawEllipse(QPointF(x, 8), 1.6, 1.6);
  } else if (sign == Sign::Warning) {
    painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolygon(QPolygonF({{8, 2}, {14.5, 13.5}, {1.5, 13.5}}));
  } else {
    painter.drawEllipse(QPointF(8, 8), 7, 7);
  }
  painter.setPen(QPen(inside, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(strokeOf(sign));
  painter.setPen(Qt::NoPen);
  painter.setBrush(inside);
  if (sign == Sign::Hint) painter.drawEllipse(QPointF(8, 4.8), 1.1, 1.1);
  if (sign == Sign::Warning) painter.drawEllipse(QPointF(8, 12.2), 1, 1);
  painter.restore();
}

}  // namespace orvanta
