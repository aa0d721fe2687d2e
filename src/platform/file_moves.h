#pragma once

#include <QString>

namespace orvanta {

/// Gives the file `from` the name `to` on the same file system. It never replaces: where `to` is taken, by
/// whatever it be, or the system refuses, nothing changes and false comes back.
bool renameNoReplace(const QString& from, const QString& to);

}  // namespace orvanta
