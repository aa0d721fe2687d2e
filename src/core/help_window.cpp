#include "core/help_window.h"

#include <QIcon>
#include <QKeyEvent>
#include <QPainter>

#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

Form2::Form2(QWidget* owner) : Form(u"Form2"_s, 10800, 8220, owner) {
  setTitle(Designed(u"Help"));
  setFixedSize(designSize());
}

void Form2::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QIcon(u":/help/help.png"_s).paint(&painter, rect());
}

void Form2::mousePressEvent(QMouseEvent*) {
  hide();
}

void Form2::keyPressEvent(QKeyEvent* event) {
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
    if (event->key() == key) hide();
  }
}

}  // namespace orvanta
