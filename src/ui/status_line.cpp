#include "ui/status_line.h"

#include <QAccessibleWidget>
#include <QHelpEvent>
#include <QPainter>
#include <QRegularExpression>

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

QAccessibleInterface* makeAccessible(const QString& className, QObject* object) {
  if (className != QLatin1StringView(StatusLine::staticMetaObject.className())) return nullptr;
  return new QAccessibleWidget(qobject_cast<QWidget*>(object), QAccessible::StatusBar);
}

QString wholeText(const Status& status) {
  const QString details = status.details.shown();
  return details.isEmpty() ? status.sentence.shown() : status.sentence.shown() + u'\n' + details;
}

/// Draws sign and sentence from `line`'s left side on. Returns the width that they take where they fit.
int drawStatus(const Status& status, const QRect& line, QPainter* painter, const QWidget& on) {
  QRect words = line;
  if (status.sign != Status::Sign::None) words.adjust(signSize + gap, 0, 0, 0);
  const QString sentence = status.sentence.shown();
  if (painter != nullptr) {
    const QRectF sign(line.left(), line.center().y() - signSize / 2.0 + 0.5, signSize, signSize);
    drawSign(status.sign, sign, on.palette(), *painter);
    painter->setPen(on.palette().color(QPalette::Active, QPalette::WindowText));
    painter->drawText(words, Qt::AlignLeft | Qt::AlignVCenter,
                      on.fontMetrics().elidedText(sentence, Qt::ElideRight, words.width()));
  }
  return words.left() - line.left() + on.fontMetrics().horizontalAdvance(sentence);
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
    const auto action = m_status.caption.shown().isEmpty() && m_trouble ? m_trouble->action : m_status.action;
    if (action) action();
  });
}

void StatusLine::tell(const Status& status, const std::optional<Status>& trouble) {
  m_status = status;
  m_trouble = trouble;
  QString told = status.sentence.shown();
  QString tip = wholeText(status);
  if (trouble) {
    told += u" · "_s + trouble->sentence.shown();
    tip += u"\n\n"_s + wholeText(*trouble);
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

void StatusLine::showButton() {
  const bool own = !m_status.caption.shown().isEmpty();
  const QString caption = own || !m_trouble ? m_status.caption.shown() : m_trouble->caption.shown();
  if (caption == m_button->text()) return;
  // A press already begun was never meant for the new action: the focus moves away, and the press is dropped.
  m_button->setDown(false);
  m_button->hide();
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
  layOut();
}

void StatusLine::layOut() {
  const int buttonWidth = m_button->sizeHint().width() + margin;
  m_button->setGeometry(width() - buttonWidth, 0, buttonWidth, height());
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
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(m_hint, Qt::ElideRight, line.width()));
    return;
  }
  if (m_trouble) {
    const int wanted = drawStatus(*m_trouble, line, nullptr, *this);
    QRect second = line;
    second.setLeft(line.right() - qMin(wanted, line.width() / 2));
    drawStatus(*m_trouble, second, &painter, *this);
    line.setRight(second.left() - 2 * gap);
  }
  drawStatus(m_status, line, &painter, *this);
}

}  // namespace orvanta
