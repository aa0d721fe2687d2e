#pragma once

#include <QFileDevice>
#include <QString>

namespace orvanta {

/// Waits until the file `path`, or all files below the folder `path`, are on the disk and not only in the
/// system's memory. With a slow disk that can take minutes. False if the disk did not take all of it, or
/// there is nothing at `path`.
bool syncToDisk(const QString& path);

/// Has the system begin to write these bytes of an open file to the disk, where it would else gather them in
/// memory first. Waits for nothing; a system that cannot do so does it in its own time.
void beginSync(const QFileDevice& file, qint64 from, qint64 bytes);

}  // namespace orvanta
