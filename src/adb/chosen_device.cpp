#include "adb/chosen_device.h"

namespace orvanta {

namespace {
constexpr const char* variable = "ANDROID_SERIAL";
}

QString chosenDevice() {
  return qEnvironmentVariable(variable);
}

void chooseDevice(const QString& serial) {
  qputenv(variable, serial.toUtf8());
}

}  // namespace orvanta
