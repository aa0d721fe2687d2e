#pragma once

#include <QString>

namespace orvanta {

/// The serial of the device that every adb of this process works on, by the environment that it hands on to
/// its children; empty where adb takes the only one. An earlier program may have chosen.
QString chosenDevice();

/// From now on every child works on the device `serial`, and on no other.
void chooseDevice(const QString& serial);

}  // namespace orvanta
