#pragma once

class QWidget;

namespace orvanta {

class BusyStrip;
class Turn;

/// Shows on `strip` the running tools of `turn` and the clicks that it refuses; the strip's Stop stops the
/// turn.
void showTools(Turn& turn, BusyStrip* strip);

/// Shows in the title of `window` and at its place in the taskbar, for the time of a transfer of `turn`, how
/// many percent are through.
void showPercentage(Turn& turn, QWidget* window);

}  // namespace orvanta
