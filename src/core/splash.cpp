#include "core/splash.h"

#include <QCloseEvent>
#include <QIcon>
#include <QPainter>

#include "text/face.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {
constexpr int stripHeight = 24;
constexpr int stripMargin = 6;
}  // namespace

Form9::Form9() : Form(u"Form9"_s, 7200, 4920), busyStrip(new BusyStrip(this)) {
  setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
  setWindowTitle(u"Orvanta"_s);
  setAccessibleName(u"Orvanta"_s);
  busyStrip->setGeometry(stripMargin, height() - stripHeight - stripMargin, width() - 2 * stripMargin,
                         stripHeight);
  m_Timer1.setObjectName(u"Timer1"_s);
  m_Timer1.setSingleShot(true);
  m_Timer1.setInterval(1);
}

void Form9::Form_Load(const QString& commandText, std::function<void()> showMainWindow) {
  if (commandText.isEmpty()) {
    showMainWindow();
    return;
  }
  connect(&m_Timer1, &QTimer::timeout, this,
          [showMainWindow = std::move(showMainWindow)] { showMainWindow(); });
  centreOnScreen(*screen());
  show();
  m_Timer1.start();
}

void Form9::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QIcon(face() == Face::Chinese ? u":/splash/splash_zh.png"_s : u":/splash/splash.png"_s)
      .paint(&painter, rect());
}

void Form9::closeEvent(QCloseEvent* event) {
  // Without it the user could neither see that the start hangs in a tool nor end the tool.
  event->ignore();
  Q_EMIT busyStrip->stopRequested();
}

}  // namespace orvanta
