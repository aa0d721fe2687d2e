#pragma once

#include <QString>

#include "packages.h"
#include "system.h"

namespace orvanta::headset {

/// Puts the first `count` apps of a fixed row on the headset: labels in several languages, both forms of
/// install path, packages with splits, some taken off with their data kept, sizes of every order. `stateDir`
/// remembers how far the row has come, so that an app that was taken off does not come back. On failure the
/// reason, else an empty text.
QString seedApps(SystemHost& host, Packages& packages, int count, const QString& stateDir);

}  // namespace orvanta::headset
