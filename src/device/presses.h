#pragma once

#include <QString>
#include <QStringList>

#include "core/tools.h"

/// What the device panel and the adb row send, as command lines.
namespace orvanta {

inline constexpr int pressCount = 23;

/// The command lines of press `Index`, in the order in which they run:
///   adb shell setprop debug.oculus.capture.width 1280
/// A size is two lines, width before height; the last press is `adb reboot`. An index out of range has none.
QStringList pressLines(const Host& host, int Index);

/// Makes the headset offer its storage as a drive: adb shell svc usb setFunctions mtp true
QString mtpLine(const Host& host);

/// A free adb command: `text` behind one blank, character for character.
QString freeLine(const Host& host, const QString& text);

}  // namespace orvanta
