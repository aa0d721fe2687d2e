#pragma once

#include <QImage>
#include <QString>
#include <QStringList>
#include <optional>

#include "adb/host.h"

/// The icons of the installed apps, as the headset's reader of packages gives them.
namespace orvanta {

/// The longest side of an icon, in pixels.
inline constexpr int iconPixels = 48;

/// `<adb> shell "..."`: one call for the icons of all these apps; the reader lies on the device. Prints for
/// each a line "IC3x: " package, a blank and its icon, a PNG in base64; without an icon nothing behind the
/// blank.
QString iconsLine(const Host& host, const QStringList& packages);

/// An app's icon, as the headset printed it.
struct PrintedIcon {
  QString package;
  QByteArray picture;  ///< empty without one
};

/// Reads a line of the reply to `iconsLine`; nothing for any other line.
std::optional<PrintedIcon> printedIconIn(QStringView line);

/// The picture at the size of an icon; null where it is no PNG, or one with too many pixels to be an icon.
QImage iconOf(const QByteArray& picture);

}  // namespace orvanta
