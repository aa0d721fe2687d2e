#include "core/splash.h"

#include <QCloseEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QPainter>

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
  show();
  m_Timer1.start();
}

void Form9::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QIcon(u":/splash/splash.png"_s).paint(&painter, rect());
}

void Form9::closeEvent(QCloseEvent* event) {
  // Without it a start that hangs in a tool would go on unseen; to end the tool is what can be done about it.
  event->ignore();
  Q_EMIT busyStrip->stopRequested();
}

Form2::Form2(QWidget* owner) : Form(u"Form2"_s, 10800, 8220, owner) {
  setWindowTitle(u"Help"_s);
  setAccessibleName(u"Help"_s);
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
  if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Return || event->key() == Qt::Key_Space)
    hide();
}

}  // namespace orvanta
