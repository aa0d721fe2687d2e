#include "inventory/progress_form.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>

#include "inventory/progress.h"
#include "text/bilingual.h"
#include "ui/theme.h"
#include "ui/twips.h"
#include "ui/worded.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int widthTwips = 7005;
constexpr int barAreaTwips = 825;
constexpr int captionBarTwips = 420;  // a form's height counts one in, this form has none
constexpr int stripTwips = 480;
constexpr int stripMargin = 4;
constexpr FormColor barColor = 204 | 102 << 8 | 104 << 16;

constexpr int largestPixels = 32;  // 24 point
constexpr int smallestPixels = 13;

}  // namespace

void ProgressLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QFont sized = font();
  sized.setFamilies(QStringList{u"Arial"_s} + sized.families());
  sized.setBold(true);
  int size = largestPixels;
  do {
    sized.setPixelSize(size);
    painter.setFont(sized);
  } while (painter.fontMetrics().horizontalAdvance(text()) > width() && --size >= smallestPixels);
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine,
                   painter.fontMetrics().elidedText(text(), Qt::ElideRight, width()));
}

Form5::Form5()
    : Form(u"Form5"_s, widthTwips, barAreaTwips + stripTwips + captionBarTwips),
      Timer1(new QTimer(this)),
      Label1(new ProgressLabel(u"Label1"_s, this)),
      busyStrip(new BusyStrip(this)) {
  setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
  setWindowTitle(u"Orvanta"_s);
  worded(this, [this] {
    setAccessibleName(
        inFace(u"读取应用列表的进度"_s, u"Progress of the inventory"_s, u"Progress of the inventory"_s));
    Label1->setCaption(processingText(u"0"_s));
  });
  setFixedSize(designSize());
  Timer1->setObjectName(u"Timer1"_s);
  Timer1->setInterval(200);
  Timer1->setSingleShot(true);
  Label1->setGeometry(pixels(240), pixels(120), pixels(6615), pixels(615));
  busyStrip->setGeometry(stripMargin, pixels(barAreaTwips), width() - 2 * stripMargin,
                         pixels(stripTwips) - stripMargin);
  connect(busyStrip, &BusyStrip::stopRequested, this, &Form5::stopRequested);
}

void Form5::drawBar(int twips) {
  if (twips <= m_barTwips) return;
  m_barTwips = twips;
  update();
}

void Form5::showEvent(QShowEvent* event) {
  Form::showEvent(event);
  if (event->spontaneous()) return;  // out of the task bar
  Timer1->start();
  busyStrip->begin(u"adb"_s);
}

void Form5::hideEvent(QHideEvent* event) {
  Form::hideEvent(event);
  if (event->spontaneous()) return;
  busyStrip->end();
}

void Form5::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(QRect(0, 0, pixels(m_barTwips), pixels(barAreaTwips)),
                   resolved(barColor, palette(), QPalette::Highlight));
  painter.setPen(theme::frameLine(palette()));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void Form5::closeEvent(QCloseEvent* event) {
  event->ignore();
  Q_EMIT stopRequested();
}

void Form5::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) Q_EMIT stopRequested();
}

}  // namespace orvanta
