#include "platform/usb_devices.h"

namespace orvanta {

// A device shows its interfaces only with a driver, and with the driver adb lists it.
std::optional<bool> isDebuggablePluggedIn(const QString&) {
  return std::nullopt;
}

}  // namespace orvanta
