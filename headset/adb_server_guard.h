#pragma once

#include <QtGlobal>

namespace orvanta::headset {

/// Asks the adb server at `port` of this machine to end, and waits a little for it.
void killAdbServer(quint16 port);

/// Leaves a small process behind that ends the adb server at `port` as soon as the process that started this
/// one is gone. It does so whatever happens to either: a test program that is killed takes its children with
/// it, and nobody else would end the server. To be called while the program has one thread.
void guardAdbServer(quint16 port);

}  // namespace orvanta::headset
