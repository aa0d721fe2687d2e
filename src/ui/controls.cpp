#include "ui/controls.h"

#include <QHelpEvent>
#include <QPainter>

#include "text/text.h"
#include "ui/theme.h"
#include "ui/tool_tip.h"
#include "ui/worded.h"

namespace orvanta {

namespace {
constexpr int captionHeight = 17;
constexpr int sideMargin = 8;
constexpr qreal cornerRadius = 5;

/// More than fits any screen; a hostile package can have a label of megabytes.
QString shortened(const QString& text) {
  constexpr qsizetype most = 1000;
  return text.size() <= most ? text : text.left(most) + u'…';
}

/// A control without a caption of its own gets one by `setText`, and keeps that.
template <class Control>
void wordButton(Control* control, const Text& caption, const Text& toolTip, const Text& accessibleName) {
  if (caption.isEmpty()) return;
  worded(control, [=] {
    // The toolkit takes the key from the caption, which has none.
    const QKeySequence key = control->shortcut();
    control->setText(caption.shown());
    control->setShortcut(key);
    control->setToolTip(toolTip.shown());
    control->setAccessibleName(accessibleName.isEmpty() ? caption.shown() : accessibleName.shown());
  });
}

}  // namespace

Frame::Frame(const QString& designName, const Text& caption, QWidget* parent) : QGroupBox(parent) {
  setObjectName(designName);
  if (caption.isEmpty()) return;
  worded(this, [this, caption] {
    setTitle(caption.shown());
    setAccessibleName(caption.shown());
  });
}

QRect Frame::contentArea() const {
  return title().isEmpty() ? rect().adjusted(sideMargin, 2, -sideMargin, -2)
                           : rect().adjusted(sideMargin, captionHeight, -sideMargin, -4);
}

void Frame::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPalette& colors = palette();
  painter.setPen(theme::frameLine(colors));
  painter.setBrush(theme::frameGround(colors));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius, cornerRadius);

  QFont small = font();
  small.setPixelSize(theme::captionPixels);
  small.setBold(false);
  painter.setFont(small);
  painter.setPen(isEnabled() ? theme::captionText(colors)
                             : colors.color(QPalette::Disabled, QPalette::WindowText));
  const QRect line(sideMargin, 2, width() - 2 * sideMargin, captionHeight - 2);
  painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(title(), Qt::ElideRight, line.width()));
}

Label::Label(const QString& designName, QWidget* parent) : TextLabel(parent) {
  setObjectName(designName);
  setTextFormat(Qt::PlainText);
  setTextInteractionFlags(Qt::NoTextInteraction);
}

void Label::setBackColor(FormColor color) {
  m_backColor = color;
  update();
}

void Label::setForeColor(FormColor color) {
  m_foreColor = color;
  update();
}

bool TextLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || toolTip().isEmpty()) return QLabel::event(event);
  showToolTip(static_cast<QHelpEvent*>(event)->globalPos(), toolTip(), this);
  return true;
}

QSize Label::minimumSizeHint() const {
  return {20, fontMetrics().height()};
}

void Label::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
  QColor ink = palette().color(group, QPalette::WindowText);
  QRect line = rect();
  if (m_backColor >= 0) {
    const QColor ground = resolved(m_backColor, palette(), QPalette::Window);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(rect(), 3, 3);
    ink = readableOn(ground);
    line.adjust(4, 0, -4, 0);
  }
  if (m_foreColor >= 0) ink = resolved(m_foreColor, palette(), QPalette::WindowText);
  painter.setPen(ink);
  painter.setFont(font());
  QString shown = shortened(text());
  shown.replace(u'\n', u' ').replace(u'\r', u' ');
  painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(shown, Qt::ElideMiddle, line.width()));
}

Button::Button(const QString& designName, const Text& caption, const Text& toolTip, QWidget* parent,
               const Text& accessibleName)
    : QPushButton(parent) {
  setObjectName(designName);
  wordButton(this, caption, toolTip, accessibleName);
  setAutoDefault(false);
}

void Button::setBackColor(FormColor color) {
  m_backColor = color;
  if (color < 0) {
    setPalette(QPalette());
    return;
  }
  QPalette colored = palette();
  const QColor ground = resolved(color, colored, QPalette::Button);
  colored.setColor(QPalette::Button, ground);
  colored.setColor(QPalette::ButtonText, readableOn(ground));
  setPalette(colored);
}

void Button::setFirstAction() {
  setProperty("firstAction", true);
  QPalette dark;
  for (const auto group : {QPalette::Active, QPalette::Inactive})
    dark.setColor(group, QPalette::ButtonText, theme::accentText());
  setPalette(dark);
}

CheckBox::CheckBox(const QString& designName, const Text& caption, const Text& toolTip, QWidget* parent)
    : QCheckBox(parent) {
  setObjectName(designName);
  wordButton(this, caption, toolTip, {});
}

}  // namespace orvanta
