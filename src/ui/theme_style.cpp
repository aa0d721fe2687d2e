#include "ui/theme_style.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QStyleFactory>
#include <QStyleOption>

#include "ui/status_sign.h"
#include "ui/theme.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

QRectF inner(const QRect& rect) {
  return QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5);
}

void drawButton(const QStyleOption& option, bool firstAction, QPainter& painter) {
  const bool enabled = option.state & QStyle::State_Enabled;
  const bool dark = option.palette.color(QPalette::Window).lightness() < 128;
  QColor ground = option.palette.color(QPalette::Button);
  QColor line = theme::frameLine(option.palette);
  if (firstAction && enabled) {
    ground = theme::accent();
    line = ground.darker(115);
  }
  if (!enabled) {
    ground.setAlphaF(0.5F);
  } else if (option.state & (QStyle::State_Sunken | QStyle::State_On)) {
    ground = dark ? ground.lighter(140) : ground.darker(115);
  } else if (option.state & QStyle::State_MouseOver) {
    ground = dark ? ground.lighter(120) : ground.darker(105);
    line = line.darker(dark ? 80 : 120);
  }
  if (enabled && (option.state & QStyle::State_HasFocus)) line = option.palette.color(QPalette::Highlight);
  painter.setPen(QPen(line, 1));
  painter.setBrush(ground);
  painter.drawRoundedRect(inner(option.rect), 4, 4);
}

void drawFieldLine(const QStyleOption& option, QPainter& painter) {
  const bool enabled = option.state & QStyle::State_Enabled;
  const bool focus = enabled && option.state & QStyle::State_HasFocus;
  painter.setPen(focus     ? option.palette.color(QPalette::Highlight)
                 : enabled ? theme::fieldLine(option.palette)
                           : theme::frameLine(option.palette));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(inner(option.rect), 3, 3);
}

void drawCheckBox(const QStyleOption& option, QPainter& painter) {
  const bool enabled = option.state & QStyle::State_Enabled;
  const bool some = option.state & QStyle::State_NoChange;
  const bool checked = some || option.state & QStyle::State_On;
  const QColor accent = option.palette.color(QPalette::Highlight);
  const QColor muted = option.palette.color(QPalette::Disabled, QPalette::WindowText);
  QRect box(0, 0, 14, 14);
  box.moveCenter(option.rect.center());
  QColor line = enabled ? option.palette.color(QPalette::WindowText) : muted;
  line.setAlphaF(0.6F);
  painter.setPen(QPen(checked && enabled ? accent : line, 1));
  painter.setBrush(checked ? (enabled ? accent : muted) : option.palette.color(QPalette::Base));
  painter.drawRoundedRect(inner(box), 3, 3);
  if (!checked) return;
  QPainterPath tick(box.topLeft() + QPointF(3.2, 7.2));
  if (!some) tick.lineTo(box.topLeft() + QPointF(6.0, 10.0));
  tick.lineTo(box.topLeft() + (some ? QPointF(10.8, 7.2) : QPointF(10.8, 4.4)));
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(Qt::white, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(tick);
}

}  // namespace

ThemeStyle::ThemeStyle() : QProxyStyle(QStyleFactory::create(u"Fusion"_s)) {}

void ThemeStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
  if (element == PE_Frame) {
    painter->setPen(theme::frameLine(option->palette));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    return;
  }
  if (element == PE_PanelMenu) {
    painter->setPen(theme::frameLine(option->palette).darker(130));
    painter->setBrush(option->palette.color(QPalette::Button));
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    return;
  }
  const bool ours =
      element == PE_PanelButtonCommand || element == PE_IndicatorCheckBox || element == PE_FrameLineEdit;
  if (!ours) {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    return;
  }
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  if (element == PE_PanelButtonCommand) {
    drawButton(*option, widget != nullptr && widget->property("firstAction").toBool(), *painter);
  } else if (element == PE_FrameLineEdit) {
    drawFieldLine(*option, *painter);
  } else {
    drawCheckBox(*option, *painter);
  }
  painter->restore();
}

int ThemeStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* data) const {
  if (hint == SH_ToolTip_WakeUpDelay) return 500;
  if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
  return QProxyStyle::styleHint(hint, option, widget, data);
}

QIcon ThemeStyle::standardIcon(StandardPixmap pixmap, const QStyleOption* option,
                               const QWidget* widget) const {
  const auto sign = [pixmap] {
    switch (pixmap) {
      case SP_MessageBoxInformation:
      case SP_MessageBoxQuestion:
        return Status::Sign::Hint;
      case SP_MessageBoxWarning:
        return Status::Sign::Warning;
      case SP_MessageBoxCritical:
        return Status::Sign::Error;
      default:
        return Status::Sign::None;
    }
  }();
  if (sign == Status::Sign::None) return QProxyStyle::standardIcon(pixmap, option, widget);
  constexpr int size = 32;
  QIcon icon;
  for (const int scale : {1, 2, 3}) {
    QPixmap picture(size * scale, size * scale);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    drawSign(sign, QRectF(2, 2, size - 4, size - 4), QApplication::palette(), painter);
    icon.addPixmap(picture);
  }
  return icon;
}

int ThemeStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  // Otherwise the last entry of a menu overlaps its frame.
  if (metric == PM_MenuVMargin || metric == PM_MenuHMargin) return 4;
  return QProxyStyle::pixelMetric(metric, option, widget);
}

}  // namespace orvanta
