#pragma once

#include <QString>

namespace orvanta {

/// Gives the file `from` the name `to` on the same file system. It never replaces anything: if `to` exists in
/// any form, or the system refuses, nothing changes and the result is false.
bool renameNoReplace(const QString& from, const QString& to);

/// Moves a file or folder to the user's waste bin. False if it stays where it is.
bool moveToWasteBin(const QString& path);

}  // namespace orvanta
