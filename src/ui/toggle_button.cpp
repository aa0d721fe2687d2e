#include "ui/toggle_button.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

#include "text/text.h"
#include "ui/twips.h"
#include "ui/worded.h"

namespace orvanta {

ToggleButton::ToggleButton(const QString& designName, const Text& caption, QColor raisedFace,
                           QColor pressedFace, QWidget* parent)
    : QAbstractButton(parent), m_caption(caption), m_raisedFace(raisedFace), m_pressedFace(pressedFace) {
  setObjectName(designName);
  setCheckable(true);
  worded(this, [this] { setText(m_caption.shown()); });
  setFocusPolicy(Qt::StrongFocus);
}

void ToggleButton::setCaption(const Text& caption) {
  m_caption = caption;
  setText(caption.shown());
}

QSize ToggleButton::sizeHint() const {
  return {pixels(975), pixels(390)};
}

void ToggleButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor face = isChecked() ? m_pressedFace : m_raisedFace;
  if (isDown()) face = face.darker(115);
  painter.setPen(face.darker(130));
  painter.setBrush(face);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
  // Both faces are of medium brightness, on which black reads best.
  const QColor ink = Qt::black;
  if (hasFocus()) {
    painter.setPen(QPen(ink, 1, Qt::DotLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(3.5, 3.5, -3.5, -3.5), 2, 2);
  }
  painter.setPen(ink);
  painter.drawText(rect(), Qt::AlignCenter, text());
}

}  // namespace orvanta
