#include "ui/form.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QHideEvent>
#include <QScreen>

#include "platform/awaited.h"
#include "text/text.h"
#include "ui/twips.h"
#include "ui/worded.h"

namespace orvanta {

namespace {

constexpr int captionBarTwips = 420;

/// Where a window of this size stands in the middle of `around`, and within `room`.
QPoint middle(QSize size, QRect around, QRect room) {
  QRect place(QPoint(), size);
  place.moveCenter(around.center());
  return {qMax(room.left(), qMin(place.left(), room.right() + 1 - place.width())),
          qMax(room.top(), qMin(place.top(), room.bottom() + 1 - place.height()))};
}

}  // namespace

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

void Form::setTitle(const Text& title) {
  worded(this, [this, title] { setWindowTitle(title.shown()); });
}

void Form::layOutAnew() {
  QResizeEvent same(size(), size());
  resizeEvent(&same);
}

bool Form::event(QEvent* event) {
  const bool handled = QWidget::event(event);
  // By now every control has its new text.
  if (event->type() == QEvent::LanguageChange) layOutAnew();
  return handled;
}

void Form::apply(QSize room) {
  setMinimumSize(designSize());
  const QSize wanted = designSize() + room;
  // A maximised window keeps the screen's size; only its layout changes.
  if (isMaximized() || isFullScreen() || size() == wanted) {
    layOutAnew();
  } else {
    resize(wanted);
  }
}

QCoro::Task<bool> Form::showModal() {
  setWindowModality(Qt::ApplicationModal);
  show();
  activateWindow();
  if (!isVisible()) co_return true;
  const bool lives = co_await Emitted(this, &Form::hidden);
  co_return lives;
}

bool Form::focusNextPrevChild(bool next) {
  // The toolkit also asks for the next control when the focused one was just disabled or hidden.
  const QWidget* holder = focusWidget();
  const bool lost = holder != nullptr && (!holder->isEnabled() || !holder->isVisibleTo(this));
  if (!lost) return QWidget::focusNextPrevChild(next);
  m_refuge->setFocus();
  return true;
}

void Form::centreOnScreen(const QScreen& screen) {
  const QRect room = screen.availableGeometry();
  move(middle(size(), room, room));
}

void Form::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (event->spontaneous() || isMaximized() || isFullScreen()) return;
  if (parentWidget() != nullptr || isModal()) {
    move(placeOverOwner());
  } else if (m_wasShown && QGuiApplication::screenAt(frameGeometry().center()) != nullptr) {
    // A window manager would look for a new place for it.
    move(pos());
  }
  m_wasShown = true;
}

QPoint Form::placeOverOwner() const {
  const QWidget* owner = parentWidget();
  const QRect room = (owner != nullptr ? owner : this)->screen()->availableGeometry();
  if (owner == nullptr || !owner->isVisible()) return middle(size(), room, room);
  // The window manager has not framed this window yet; it will be as the owner's.
  const QRect frame = owner->frameGeometry();
  return middle(size() + frame.size() - owner->size(), frame, room);
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
