#pragma once

#include <QIcon>
#include <QImage>
#include <QWidget>

namespace orvanta {

/// Shows a picture at its own size from the top left corner; clipped at the box's edge.
class PictureBox : public QWidget {
  Q_OBJECT

 public:
  PictureBox(const QString& designName, QWidget* parent);

  const QImage& Picture() const { return m_picture; }
  void setPicture(const QImage& picture);
  /// Shows a picture of the program's own, which comes in several sizes, scaled to the box.
  void setOwnPicture(const QIcon& picture);

 Q_SIGNALS:
  /// The pointer moved over the box while `buttons` were held.
  void MouseMove(Qt::MouseButtons buttons);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  QImage m_picture;
  QIcon m_ownPicture;
};

}  // namespace orvanta
