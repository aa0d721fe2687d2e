#include "ui/busy_strip.h"

#include <QDeadlineTimer>
#include <QLocale>
#include <QPainter>

#include "text/text.h"
#include "ui/theme.h"
#include "ui/worded.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int patienceMilliseconds = 500;
// The strip stays between two tools of one handler; it goes while a question is open.
constexpr int lingerMilliseconds = 300;
constexpr int waitMilliseconds = 2000;
const QString separator = u" · "_s;

QString clock(qint64 milliseconds) {
  const qint64 seconds = milliseconds / 1000;
  const QLatin1Char zero('0');
  const QString hours = seconds < 3600 ? QString() : QString::number(seconds / 3600) + u':';
  return hours +
         u"%1:%2"_s.arg(seconds / 60 % 60, hours.isEmpty() ? 1 : 2, 10, zero).arg(seconds % 60, 2, 10, zero);
}

}  // namespace

BusyStrip::BusyStrip(QWidget* parent)
    : QWidget(parent),
      m_text(new Label(u"busyText"_s, this)),
      m_bar(new QProgressBar(this)),
      m_stop(new Button(u"busyStop"_s, Text(u"停止"_s, u"Stop"_s, u"停止 Stop"_s),
                        Text(u"停止正在运行的工具"_s, u"Stop the running tool"_s), this)) {
  setObjectName(u"busyStrip"_s);
  m_bar->setTextVisible(false);
  m_bar->setRange(0, 0);
  worded(this, [this] { m_bar->setAccessibleName(inFace(u"进度"_s, u"Progress"_s, u"Progress"_s)); });
  m_patience.setSingleShot(true);
  m_patience.setInterval(patienceMilliseconds);
  m_linger.setSingleShot(true);
  m_linger.setInterval(lingerMilliseconds);
  m_second.setInterval(1000);
  m_wait.setSingleShot(true);
  m_wait.setInterval(waitMilliseconds);
  connect(&m_patience, &QTimer::timeout, this, &BusyStrip::settleView);
  connect(&m_linger, &QTimer::timeout, this, [this] {
    m_busy = false;
    m_patience.stop();
    settleView();
  });
  connect(&m_second, &QTimer::timeout, this, &BusyStrip::refresh);
  connect(&m_wait, &QTimer::timeout, this, &BusyStrip::settleView);
  connect(m_stop, &QPushButton::clicked, this, [this] {
    m_stop->setEnabled(false);
    Q_EMIT stopRequested();
  });
  hide();
}

void BusyStrip::begin(const QString& name) {
  m_name = name;
  m_since.start();
  m_stop->setEnabled(true);
  m_linger.stop();
  m_busy = true;
  if (!m_inView && !m_patience.isActive()) m_patience.start();
  refresh();
}

void BusyStrip::pause() {
  m_linger.start();
}

void BusyStrip::end() {
  for (QTimer* timer : {&m_patience, &m_linger, &m_wait}) timer->stop();
  m_busy = false;
  m_stop->setEnabled(true);
  setProgress(0, 0);
  settleView();
}

void BusyStrip::askToWait() {
  m_wait.start();
  settleView();
}

void BusyStrip::setProgress(qint64 doneBytes, qint64 allBytes) {
  const bool newlyKnown = (m_allBytes > 0) != (allBytes > 0);
  if (newlyKnown) m_pace.clear();
  m_doneBytes = qMin(doneBytes, allBytes);
  m_allBytes = allBytes;
  if (allBytes > 0) {
    m_pace.note(QDeadlineTimer::current().deadline(), m_doneBytes, allBytes);
    m_bar->setRange(0, 1000);
    m_bar->setValue(
        static_cast<int>(static_cast<double>(m_doneBytes) * 1000 / static_cast<double>(allBytes)));
  } else {
    m_bar->setRange(0, 0);
  }
  // Figures that change five times a second cannot be read; the rest comes with the second.
  if (newlyKnown) refresh();
}

void BusyStrip::settleView() {
  const bool inView = m_wait.isActive() || (m_busy && !m_patience.isActive());
  if (inView) refresh();
  if (m_inView == inView) return;
  m_inView = inView;
  setVisible(inView);
  if (inView) {
    m_second.start();
  } else {
    m_second.stop();
  }
  Q_EMIT inViewChanged();
}

void BusyStrip::refresh() {
  layOut();
  if (m_wait.isActive()) {
    m_text->setCaption(inFace(u"请等待当前操作结束"_s, u"Wait for the current operation"_s));
    return;
  }
  m_text->setCaption(caption());
}

QString BusyStrip::caption() const {
  const QString elapsed = clock(m_since.isValid() ? m_since.elapsed() : 0);
  if (m_allBytes <= 0) return m_name + separator + elapsed;
  const QLocale locale = QLocale::c();
  QStringList parts = {
      m_name, elapsed, QString::number(percentOf(m_doneBytes, m_allBytes)) + u'%',
      locale.formattedDataSize(m_doneBytes, 1) + u" / "_s + locale.formattedDataSize(m_allBytes, 1)};
  const auto speed = m_pace.speed();
  if (m_doneBytes == m_allBytes) {
    parts << inFace(u"等待头显"_s, u"waiting for the headset"_s);
  } else if (speed) {
    parts << locale.formattedDataSize(*speed, 1) + u"/s"_s
          << inFace(u"剩余 %1"_s, u"%1 left"_s, u"剩余 %1 (left)"_s).arg(clock(*m_pace.secondsLeft() * 1000));
  }
  // The time left is what the user waits for; what the other figures tell can be seen from the bar as well.
  for (const int leastWanted : {1, 2, 2}) {
    const bool fits = m_text->fontMetrics().horizontalAdvance(parts.join(separator)) <= m_text->width();
    if (fits || parts.size() <= 3) break;
    parts.removeAt(leastWanted);
  }
  return parts.join(separator);
}

void BusyStrip::resizeEvent(QResizeEvent*) {
  layOut();
}

void BusyStrip::layOut() {
  const int stopWidth = m_stop->sizeHint().width();
  const int barWidth = m_wait.isActive() ? 0 : width() / 4;
  constexpr int highestButton = 26;
  const int high = qMin(height(), highestButton);
  const int space = (height() - high) / 2;
  const int right = width() - space - stopWidth;
  m_stop->setGeometry(right, space, stopWidth, high);
  m_bar->setGeometry(right - 8 - barWidth, height() / 2 - 4, barWidth, 8);
  m_text->setGeometry(8, 0, right - barWidth - 24, height());
}

void BusyStrip::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(theme::frameLine(palette()));
  painter.setBrush(theme::frameGround(palette()));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
}

}  // namespace orvanta
