#include "core/busy_tools.h"

#include <QWidget>
#include <utility>

#include "core/turn.h"
#include "platform/taskbar_progress.h"
#include "ui/busy_strip.h"
#include "ui/transfer_pace.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

class Percentage : public QObject {
 public:
  explicit Percentage(QWidget* window) : QObject(window), m_window(window) {}

  void show(qint64 done, qint64 all) {
    const int percent = all > 0 ? percentOf(done, all) : -1;
    const int before = std::exchange(m_percent, percent);
    if (percent == before) return;
    if (before < 0) m_title = m_window->windowTitle();
    m_window->setWindowTitle(percent < 0 ? m_title : u"%1% · "_s.arg(percent) + m_title);
    showTaskbarProgress(m_window->windowHandle(), percent);
  }

 private:
  QWidget* m_window;
  QString m_title;  // without a transfer
  int m_percent = -1;
};

}  // namespace

void showTools(Turn& turn, BusyStrip* strip) {
  QObject::connect(&turn, &Turn::toolStarted, strip, &BusyStrip::begin);
  QObject::connect(&turn, &Turn::toolEnded, strip, &BusyStrip::pause);
  QObject::connect(&turn, &Turn::progressed, strip, &BusyStrip::setProgress);
  QObject::connect(&turn, &Turn::questionAsked, strip, &BusyStrip::end);
  QObject::connect(&turn, &Turn::ended, strip, &BusyStrip::end);
  QObject::connect(&turn, &Turn::refused, strip, &BusyStrip::askToWait);
  QObject::connect(strip, &BusyStrip::stopRequested, &turn, &Turn::requestStop);
}

void showPercentage(Turn& turn, QWidget* window) {
  auto* percentage = new Percentage(window);
  QObject::connect(&turn, &Turn::progressed, percentage, &Percentage::show);
  QObject::connect(&turn, &Turn::ended, percentage, [percentage] { percentage->show(0, 0); });
}

}  // namespace orvanta
