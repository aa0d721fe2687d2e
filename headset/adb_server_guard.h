#pragma once

#include <QtGlobal>

namespace orvanta::headset {

/// Asks the adb server at `port` of this machine to end, and waits a little for it.
void killAdbServer(quint16 port);

/// Forks a small process that ends the adb server at `port` as soon as this process's parent is gone, also
/// after a kill: nobody else would end the server then. Call it while the program has one thread.
void guardAdbServer(quint16 port);

}  // namespace orvanta::headset
