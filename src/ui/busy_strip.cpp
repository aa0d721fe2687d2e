#include "ui/busy_strip.h"

#include <QLocale>
#include <QPainter>

#include "ui/theme.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int patienceMilliseconds = 500;
// Between two tools of one handler the strip stays; under a question to the user it goes.
constexpr int lingerMilliseconds = 300;

QString clock(qint64 milliseconds) {
  const qint64 seconds = milliseconds / 1000;
  return u"%1:%2"_s.arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

}  // namespace

BusyStrip::BusyStrip(QWidget* parent)
    : QWidget(parent),
      m_text(new Label(u"busyText"_s, this)),
      m_bar(new QProgressBar(this)),
      m_stop(
          new Button(u"busyStop"_s, u"停止 Stop"_s, u"停止正在运行的工具 (Stop the running tool)"_s, this)) {
  setObjectName(u"busyStrip"_s);
  m_bar->setTextVisible(false);
  m_bar->setRange(0, 0);
  m_bar->setAccessibleName(u"Progress"_s);
  m_patience.setSingleShot(true);
  m_patience.setInterval(patienceMilliseconds);
  m_linger.setSingleShot(true);
  m_linger.setInterval(lingerMilliseconds);
  m_second.setInterval(1000);
  connect(&m_patience, &QTimer::timeout, this, [this] { setInView(true); });
  connect(&m_linger, &QTimer::timeout, this, &BusyStrip::end);
  connect(&m_second, &QTimer::timeout, this, &BusyStrip::refresh);
  connect(m_stop, &QPushButton::clicked, this, [this] {
    m_stop->setEnabled(false);
    Q_EMIT stopRequested();
  });
  hide();
}

void BusyStrip::begin(const QString& name) {
  m_name = name;
  m_doneBytes = 0;
  m_allBytes = -1;
  m_since.start();
  m_stop->setEnabled(true);
  m_linger.stop();
  if (!m_inView && !m_patience.isActive()) m_patience.start();
  refresh();
}

void BusyStrip::pause() {
  m_linger.start();
}

void BusyStrip::end() {
  m_patience.stop();
  m_linger.stop();
  setInView(false);
}

void BusyStrip::setProgress(qint64 doneBytes, qint64 allBytes) {
  m_doneBytes = doneBytes;
  m_allBytes = allBytes;
  refresh();
}

void BusyStrip::setInView(bool inView) {
  if (m_inView == inView) return;
  m_inView = inView;
  setVisible(inView);
  if (inView) {
    m_second.start();
    refresh();
  } else {
    m_second.stop();
  }
  Q_EMIT inViewChanged();
}

void BusyStrip::refresh() {
  QString text = u"%1 · %2"_s.arg(m_name, clock(m_since.isValid() ? m_since.elapsed() : 0));
  if (m_allBytes > 0) {
    const QLocale locale = QLocale::c();
    text += u" · %1 / %2"_s.arg(locale.formattedDataSize(m_doneBytes, 1),
                                locale.formattedDataSize(m_allBytes, 1));
    m_bar->setRange(0, 1000);
    m_bar->setValue(static_cast<int>(qMin(m_doneBytes, m_allBytes) * 1000 / m_allBytes));
  } else {
    m_bar->setRange(0, 0);
  }
  m_text->setCaption(text);
}

void BusyStrip::resizeEvent(QResizeEvent*) {
  const int stopWidth = m_stop->sizeHint().width();
  const int barWidth = width() / 4;
  m_stop->setGeometry(width() - stopWidth, 0, stopWidth, height());
  m_bar->setGeometry(width() - stopWidth - 8 - barWidth, height() / 2 - 4, barWidth, 8);
  m_text->setGeometry(8, 0, width() - stopWidth - barWidth - 24, height());
}

void BusyStrip::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(theme::frameLine(palette()));
  painter.setBrush(theme::frameGround(palette()));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
}

}  // namespace orvanta
