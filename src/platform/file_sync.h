#pragma once

#include <QString>

namespace orvanta {

/// Waits until the file `path`, or all files below the folder `path`, are on the disk and not only in the
/// system's memory. With a slow disk that can take minutes. False if the disk did not take all of it, or
/// there is nothing at `path`.
bool syncToDisk(const QString& path);

}  // namespace orvanta
