#include "ui/form.h"

#include <QCloseEvent>
#include <QHideEvent>

#include "ui/awaited.h"
#include "ui/twips.h"

namespace orvanta {

namespace {
constexpr int captionBarTwips = 420;
}

Form::Form(const QString& designName, int widthTwips, int heightTwips, QWidget* owner)
    : QWidget(owner, Qt::Window), m_widthTwips(widthTwips), m_heightTwips(heightTwips) {
  setObjectName(designName);
  setAttribute(Qt::WA_QuitOnClose, false);
  apply(QSize(0, 0));
}

QSize Form::designSize() const {
  return {pixels(m_widthTwips), pixels(m_heightTwips - captionBarTwips)};
}

QSize Form::userRoom() const {
  return (size() - designSize()).expandedTo(QSize(0, 0));
}

void Form::setWidth(int twips) {
  const QSize room = userRoom();
  m_widthTwips = twips;
  apply(room);
}

void Form::setHeight(int twips) {
  const QSize room = userRoom();
  m_heightTwips = twips;
  apply(room);
}

void Form::apply(QSize room) {
  setMinimumSize(designSize());
  const QSize wanted = designSize() + room;
  // A maximised window keeps the screen's size; only how it is divided changes.
  if (isMaximized() || isFullScreen() || size() == wanted) {
    QResizeEvent same(size(), size());
    resizeEvent(&same);
  } else {
    resize(wanted);
  }
}

QCoro::Task<> Form::showModal() {
  setWindowModality(Qt::ApplicationModal);
  show();
  activateWindow();
  if (isVisible()) co_await Emitted(this, &Form::hidden);
}

void Form::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  if (event->spontaneous()) return;
  // Not every window manager gives the focus back to the window below.
  if (windowModality() == Qt::ApplicationModal && parentWidget() != nullptr) parentWidget()->activateWindow();
  Q_EMIT hidden();
}

void Form::closeEvent(QCloseEvent* event) {
  Q_EMIT closedByUser();
  event->accept();
}

}  // namespace orvanta
