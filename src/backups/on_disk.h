#pragma once

#include <QCoroTask>
#include <QString>

namespace orvanta {

/// Waits for `syncToDisk` of `platform/file_sync.h` without holding up the window.
QCoro::Task<bool> isOnDisk(QString path);

}  // namespace orvanta
