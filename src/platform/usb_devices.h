#pragma once

#include <QString>
#include <optional>

namespace orvanta {

/// Whether a device that offers debugging (an interface of class ff, subclass 42, protocol 01) is plugged
/// into a USB port of this computer, whether adb lists it or not. Nothing if the system does not say.
/// `devices` is the folder in which Linux describes what is plugged in.
std::optional<bool> isDebuggablePluggedIn(const QString& devices = QStringLiteral("/sys/bus/usb/devices"));

}  // namespace orvanta
