#include "ui/worded.h"

#include <QEvent>
#include <QWidget>
#include <utility>

namespace orvanta {

namespace {

class Reader : public QObject {
 public:
  Reader(QWidget* widget, std::function<void()> read) : QObject(widget), m_read(std::move(read)) {
    widget->installEventFilter(this);
    m_read();
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == parent() && event->type() == QEvent::LanguageChange) m_read();
    return QObject::eventFilter(watched, event);
  }

 private:
  std::function<void()> m_read;
};

}  // namespace

void worded(QWidget* widget, std::function<void()> read) {
  new Reader(widget, std::move(read));
}

}  // namespace orvanta
