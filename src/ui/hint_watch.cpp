#include "ui/hint_watch.h"

#include <QFocusEvent>
#include <utility>

namespace orvanta {

namespace {

constexpr std::chrono::milliseconds rest{700};
constexpr std::chrono::seconds enough{6};

bool isByKeyboard(Qt::FocusReason reason) {
  return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
}

}  // namespace

HintWatch::HintWatch(QWidget* window, std::function<void(const QWidget*)> show)
    : QObject(window), m_show(std::move(show)) {
  m_rest.setSingleShot(true);
  m_rest.setInterval(rest);
  m_enough.setSingleShot(true);
  m_enough.setInterval(enough);
  connect(&m_rest, &QTimer::timeout, this, [this] {
    if (m_under != nullptr) begin(m_under);
  });
  connect(&m_enough, &QTimer::timeout, this, &HintWatch::end);
}

void HintWatch::add(QWidget* control) {
  control->installEventFilter(this);
}

void HintWatch::begin(QWidget* control) {
  m_shown = true;
  m_enough.start();
  m_show(control);
}

void HintWatch::end() {
  m_rest.stop();
  m_enough.stop();
  if (std::exchange(m_shown, false)) m_show(nullptr);
}

bool HintWatch::eventFilter(QObject* watched, QEvent* event) {
  auto* control = qobject_cast<QWidget*>(watched);
  switch (event->type()) {
    case QEvent::Enter:
      m_under = control;
      m_rest.start();
      break;
    case QEvent::FocusIn:
      if (isByKeyboard(static_cast<QFocusEvent*>(event)->reason())) begin(control);
      break;
    case QEvent::Leave:
    case QEvent::FocusOut:
    case QEvent::MouseButtonPress:
      end();
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace orvanta
