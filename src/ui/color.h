#pragma once

#include <QColor>
#include <QPalette>

namespace orvanta {

/// A colour as forms use it: red in the low byte, or one of the codes below for colours of the desktop's
/// palette, so that a form still fits when the desktop turns dark.
using FormColor = qint32;

inline constexpr FormColor systemButtonFace = static_cast<FormColor>(0x8000000Fu);
inline constexpr FormColor systemButtonText = static_cast<FormColor>(0x80000012u);

/// The colour to paint with. `role` is the palette's colour for a system code.
inline QColor resolved(FormColor color, const QPalette& palette, QPalette::ColorRole role) {
  if (color < 0) return palette.color(role);
  return QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
}

/// Black or white, whichever reads better on `ground`.
inline QColor readableOn(const QColor& ground) {
  const double luminance = 0.299 * ground.redF() + 0.587 * ground.greenF() + 0.114 * ground.blueF();
  return luminance > 0.55 ? QColor(Qt::black) : QColor(Qt::white);
}

}  // namespace orvanta
