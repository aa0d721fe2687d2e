#pragma once

#include <QString>

#include "packages.h"
#include "system.h"

namespace orvanta::headset {

/// Installs the first `count` apps of a fixed list: labels in several languages, both forms of install path,
/// packages with splits, some uninstalled with their data kept, sizes of every magnitude. `stateDir`
/// remembers how far the list has got, so that an uninstalled app does not come back. Returns the reason on
/// failure, else an empty text.
QString seedApps(SystemHost& host, Packages& packages, int count, const QString& stateDir);

}  // namespace orvanta::headset
