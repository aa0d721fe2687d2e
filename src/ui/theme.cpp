#include "ui/theme.h"

#include <QApplication>
#include <QFontDatabase>
#include <QToolTip>

#include "platform/color_scheme.h"
#include "ui/theme_style.h"

using namespace Qt::StringLiterals;

namespace orvanta::theme {

namespace {

struct Scheme {
  QColor window, base, alternate, text, muted, button, line, highlight, link;
};

const Scheme lightScheme{QColor(0xf4f5f7), QColor(0xffffff), QColor(0xf0f1f4),
                         QColor(0x1d2230), QColor(0x696f7d), QColor(0xfdfdfe),
                         QColor(0xd2d6de), QColor(0x2f6f9f), QColor(0x1f6fb0)};
const Scheme darkScheme{QColor(0x1e212b), QColor(0x161922), QColor(0x242835),
                        QColor(0xe8eaf0), QColor(0x9aa0b0), QColor(0x2c3140),
                        QColor(0x3c4254), QColor(0x3478ab), QColor(0x6db7ee)};

QPalette paletteOf(const Scheme& s) {
  QPalette palette(s.button, s.window);
  palette.setColor(QPalette::Window, s.window);
  palette.setColor(QPalette::WindowText, s.text);
  palette.setColor(QPalette::Base, s.base);
  palette.setColor(QPalette::AlternateBase, s.alternate);
  palette.setColor(QPalette::Text, s.text);
  palette.setColor(QPalette::Button, s.button);
  palette.setColor(QPalette::ButtonText, s.text);
  palette.setColor(QPalette::Highlight, s.highlight);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::ToolTipBase, s.base);
  palette.setColor(QPalette::ToolTipText, s.text);
  palette.setColor(QPalette::PlaceholderText, s.muted);
  palette.setColor(QPalette::Link, s.link);
  palette.setColor(QPalette::Mid, s.line);
  palette.setColor(QPalette::BrightText, Qt::white);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, s.muted);
  }
  return palette;
}

QFont firstOf(const QStringList& families, int pixelSize) {
  QFont font;
  font.setFamilies(families);
  font.setPixelSize(pixelSize);
  font.setStyleStrategy(QFont::PreferAntialias);
  return font;
}

void show(ColorScheme scheme) {
  const QPalette palette = paletteOf(scheme == ColorScheme::Dark ? darkScheme : lightScheme);
  QApplication::setPalette(palette);
  QToolTip::setPalette(palette);
}

}  // namespace

void apply(QApplication& application) {
  const ColorScheme atStart = desktopColorScheme();
  QApplication::setStyle(new ThemeStyle);
  show(atStart);
  // The user changes the desktop's look in another program and then comes back to this window.
  QObject::connect(&application, &QGuiApplication::applicationStateChanged, &application,
                   [shown = atStart](Qt::ApplicationState state) mutable {
                     if (state != Qt::ApplicationActive) return;
                     const ColorScheme wanted = desktopColorScheme();
                     if (wanted != shown) show(wanted);
                     shown = wanted;
                   });
  application.setFont(
      firstOf({u"Noto Sans CJK SC"_s, u"Microsoft YaHei UI"_s, u"Segoe UI"_s, u"sans-serif"_s}, textPixels));
}

QFont consoleFont() {
  QFont font = firstOf({u"Noto Sans Mono CJK SC"_s, u"Consolas"_s, u"NSimSun"_s, u"monospace"_s}, textPixels);
  font.setStyleHint(QFont::Monospace);
  return font;
}

QColor frameLine(const QPalette& palette) {
  return palette.color(QPalette::Mid);
}

QColor frameGround(const QPalette& palette) {
  QColor ground = palette.color(QPalette::Base);
  ground.setAlphaF(0.55F);
  return ground;
}

QColor fieldLine(const QPalette& palette) {
  QColor ink = palette.color(QPalette::Text);
  ink.setAlphaF(0.55F);
  return ink;
}

QColor captionText(const QPalette& palette) {
  QColor ink = palette.color(QPalette::WindowText);
  ink.setAlphaF(0.65F);
  return ink;
}

QColor accent() {
  return {0xe0, 0x6c, 0x00};
}

QColor accentText() {
  return {0x1d, 0x12, 0x00};
}

}  // namespace orvanta::theme
