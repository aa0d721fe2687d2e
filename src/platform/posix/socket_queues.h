#pragma once

#include <sys/types.h>

#include <QtGlobal>

namespace orvanta {

/// Bytes that `process` has written to its TCP connections and that the other end has not read: what the
/// kernel still holds, plus what a peer on this computer has not read. Asks the kernel about just those
/// connections, which takes microseconds. 0 if it does not say.
qint64 bytesOnTheWay(pid_t process);

}  // namespace orvanta
