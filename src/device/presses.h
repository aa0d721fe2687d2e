#pragma once

#include <QString>
#include <QStringList>

#include "adb/host.h"
#include "device/panel_table.h"

/// What the device panel sends, as command lines.
namespace orvanta {

/// The command lines of a press, in the order in which they run:
///   adb shell setprop debug.oculus.capture.width 1280
QStringList pressLines(const Host& host, PanelPress press);

}  // namespace orvanta
