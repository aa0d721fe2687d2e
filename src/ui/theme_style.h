#pragma once

#include <QProxyStyle>

namespace orvanta {

/// Fusion with flat buttons, check boxes, fields and menus whose outlines show on dark ground as well as on
/// light.
class ThemeStyle : public QProxyStyle {
 public:
  ThemeStyle();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  QIcon standardIcon(StandardPixmap pixmap, const QStyleOption* option, const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* data) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
};

}  // namespace orvanta
