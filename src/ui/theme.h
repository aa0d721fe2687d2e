#pragma once

#include <QFont>
#include <QPalette>

class QApplication;

/// The one look of the program: Fusion with a palette of our own, light and dark, and fonts in pixels, so
/// that a layout in twips fits on every desktop.
namespace orvanta::theme {

inline constexpr int textPixels = 12;
inline constexpr int captionPixels = 10;

/// Gives `application` the style, the palette that fits the desktop, and the font. The palette follows the
/// desktop when the user comes back to the program.
void apply(QApplication& application);

/// The console's font: fixed width, with CJK glyphs.
QFont consoleFont();

QColor frameLine(const QPalette& palette);
QColor frameGround(const QPalette& palette);
/// Around a field to type into: dark or light enough to be seen by itself.
QColor fieldLine(const QPalette& palette);
QColor captionText(const QPalette& palette);
/// The accent for the one button that matters most, and for progress.
QColor accent();
/// Text on it.
QColor accentText();

}  // namespace orvanta::theme
