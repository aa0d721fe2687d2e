#include "ui/picture_box.h"

#include <QMouseEvent>
#include <QPainter>

namespace orvanta {

PictureBox::PictureBox(const QString& designName, QWidget* parent) : QWidget(parent) {
  setObjectName(designName);
}

void PictureBox::setPicture(const QImage& picture) {
  m_picture = picture;
  update();
}

void PictureBox::setOwnPicture(const QIcon& picture) {
  m_ownPicture = picture;
  update();
}

void PictureBox::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  if (!m_ownPicture.isNull()) m_ownPicture.paint(&painter, rect());
  if (!m_picture.isNull()) painter.drawImage(0, 0, m_picture);
}

void PictureBox::mouseMoveEvent(QMouseEvent* event) {
  Q_EMIT MouseMove(event->buttons());
}

}  // namespace orvanta
