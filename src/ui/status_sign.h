#pragma once

#include <QRectF>

#include "ui/status.h"

class QPainter;
class QPalette;
class QColor;

namespace orvanta {

/// The colour of `sign` on the background of `palette`'s frames, dark or light enough for text too.
QColor signColor(Status::Sign sign, const QPalette& palette);

/// Draws `sign` into `place`: each has its own shape, so that nobody needs the colours.
void drawSign(Status::Sign sign, const QRectF& place, const QPalette& palette, QPainter& painter);

}  // namespace orvanta
