#include "ui/status_line.h"

#include <QAccessibleWidget>
#include <QHelpEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QTextLayout>

#include "text/face.h"
#include "ui/status_sign.h"
#include "ui/theme.h"
#include "ui/tool_tip.h"
#include "ui/worded.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int margin = 8;
constexpr int signSize = 16;
constexpr int gap = 6;
constexpr int linePitch = 16;
constexpr int highestButton = 26;

QAccessibleInterface* makeAccessible(const QString& className, QObject* object) {
  if (className != QLatin1StringView(StatusLine::staticMetaObject.className())) return nullptr;
  return new QAccessibleWidget(qobject_cast<QWidget*>(object), QAccessible::StatusBar);
}

/// `text` in one line of `width` or in two.
QStringList broken(const QString& text, int width, const QWidget& on) {
  QTextLayout layout(text, on.font());
  layout.beginLayout();
  QTextLine first = layout.createLine();
  first.setLineWidth(width);
  layout.endLayout();
  if (first.textLength() >= text.size()) return {text};
  return {text.left(first.textLength()).trimmed(), text.mid(first.textLength())};
}

/// The sentence in one line of `width` or else in two: one for each language, or as it breaks.
QStringList linesOf(const Bilingual& sentence, int width, const QWidget& on) {
  const QString whole = sentence.shown();
  const bool both = !sentence.chinese.isEmpty() && !sentence.english.isEmpty();
  if (face() != Face::AsDesigned || !both) return broken(whole, width, on);
  if (on.fontMetrics().horizontalAdvance(whole) <= width) return {whole};
  return {sentence.chinese, sentence.english};
}

void drawLines(const QStringList& lines, const QRect& place, QPainter& painter) {
  QRect line(place.left(), place.center().y() + 1 - linePitch * static_cast<int>(lines.size()) / 2,
             place.width(), linePitch);
  for (const QString& text : lines) {
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(text, Qt::ElideRight, line.width()));
    line.translate(0, linePitch);
  }
}

/// The width that sign and sentence take at most.
int widthOf(const Status& status, const QFontMetrics& metrics) {
  const int sign = status.sign == Status::Sign::None ? 0 : signSize + gap;
  return sign + metrics.horizontalAdvance(status.sentence.shown());
}

/// Draws sign and sentence from the left side of `place` on.
void drawStatus(const Status& status, const QRect& place, QPainter& painter, const QWidget& on) {
  QRect words = place;
  if (status.sign != Status::Sign::None) {
    words.adjust(signSize + gap, 0, 0, 0);
    const QRectF sign(place.left(), place.center().y() - signSize / 2.0 + 0.5, signSize, signSize);
    drawSign(status.sign, sign, on.palette(), painter);
  }
  painter.setPen(on.palette().color(QPalette::Active, QPalette::WindowText));
  drawLines(linesOf(status.sentence, words.width(), on), words, painter);
}

}  // namespace

StatusLine::StatusLine(QWidget* parent)
    : QWidget(parent), m_button(new Button(u"statusAction"_s, {}, {}, this)) {
  static const bool installed = [] {
    QAccessible::installFactory(makeAccessible);
    return true;
  }();
  Q_UNUSED(installed)
  setObjectName(u"statusLine"_s);
  m_button->hide();
  worded(this, [this] { tell(Status(m_status), std::optional(m_trouble)); });
  connect(m_button, &QPushButton::clicked, this, [this] {
    // The slot may set another status.
    const bool own = !m_status.caption.shown().isEmpty();
    const auto action = own || !m_trouble ? m_status.action : m_trouble->action;
    if (action) {
      action();
    } else {
      Q_EMIT wholeTextWanted(toolTip());
    }
  });
}

void StatusLine::tell(const Status& status, const std::optional<Status>& trouble) {
  m_status = status;
  m_trouble = trouble;
  QString told = status.sentence.shown();
  QString tip = status.wholeText();
  if (trouble) {
    told += u" · "_s + trouble->sentence.shown();
    tip += u"\n\n"_s + trouble->wholeText();
  }
  setToolTip(tip);
  setAccessibleDescription(tip == told ? QString() : tip);
  showButton();
  layOut();
  update();
  const auto words = [](QString text) { return text.remove(QRegularExpression(u"\\d+"_s)); };
  // A figure that goes on counting is no news.
  const bool isNews = words(told) != words(accessibleName());
  if (told != accessibleName()) setAccessibleName(told);
  if (!isNews) return;
  m_hint.clear();
  QAccessibleEvent alert(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&alert);
}

bool StatusLine::hasMore() const {
  if (m_status.isTrouble() && !m_status.details.shown().isEmpty()) return true;
  const int words = width() - 2 * margin - (m_status.sign == Status::Sign::None ? 0 : signSize + gap);
  for (const QString& line : linesOf(m_status.sentence, words, *this)) {
    if (fontMetrics().horizontalAdvance(line) > words) return true;
  }
  return false;
}

QString StatusLine::buttonCaption() const {
  const QString own = m_status.caption.shown();
  if (!own.isEmpty()) return own;
  if (m_trouble && !m_trouble->caption.shown().isEmpty()) return m_trouble->caption.shown();
  return hasMore() ? inFace(u"详情"_s, u"More"_s) : QString();
}

void StatusLine::showButton() {
  const QString caption = buttonCaption();
  if (caption == m_button->text()) return;
  // A press already begun was never meant for the new action: the focus moves away, and the press is dropped.
  m_button->setDown(false);
  m_button->hide();
  // While another window is active, nothing else does this; the neighbour would then get the next key.
  if (window()->focusWidget() == m_button) focusNextPrevChild(true);
  m_button->setText(caption);
  m_button->setAccessibleName(caption);
  m_button->setVisible(!caption.isEmpty());
}

void StatusLine::showHint(const QString& hint) {
  m_hint = hint;
  update();
}

bool StatusLine::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || toolTip().isEmpty()) return QWidget::event(event);
  showToolTip(static_cast<QHelpEvent*>(event)->globalPos(), toolTip(), this);
  return true;
}

void StatusLine::resizeEvent(QResizeEvent*) {
  showButton();
  layOut();
}

void StatusLine::layOut() {
  const int buttonWidth = m_button->sizeHint().width() + margin;
  const int high = qMin(height(), highestButton);
  const int space = (height() - high) / 2;
  m_button->setGeometry(width() - space - buttonWidth, space, buttonWidth, high);
}

void StatusLine::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(theme::frameLine(palette()));
  painter.setBrush(theme::frameGround(palette()));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);

  QRect line = rect().adjusted(margin, 0, -margin, 0);
  if (m_button->isVisibleTo(this)) line.setRight(m_button->x() - margin);
  if (!m_hint.isEmpty()) {
    painter.setPen(theme::captionText(palette()));
    drawLines(broken(m_hint, line.width(), *this), line, painter);
    return;
  }
  if (m_trouble) {
    QRect second = line;
    second.setLeft(line.right() - qMin(widthOf(*m_trouble, fontMetrics()), line.width() / 2));
    drawStatus(*m_trouble, second, painter, *this);
    line.setRight(second.left() - 2 * gap);
  }
  drawStatus(m_status, line, painter, *this);
}

}  // namespace orvanta
