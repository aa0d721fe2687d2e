#pragma once

#include <QString>

namespace orvanta {

/// A text that identifies the file, folder or link at `path`, so that another one that is later at the same
/// path is not mistaken for it. A rename keeps it; a copy has another. For a file it includes the size and
/// the time of the last change. Empty if there is nothing at `path` or the system cannot tell.
QString fileMark(const QString& path);

/// Whether `path` is the very file, folder or link of `mark`, even if its content has changed.
bool isItself(const QString& path, const QString& mark);
/// Whether `path` is a file of the size and time in `mark`. Some disks number their files anew each time they
/// are connected, so that the mark alone does not find one.
bool isAlike(const QString& path, const QString& mark);

}  // namespace orvanta
