#pragma once

#include <QString>

#include "core/state.h"

namespace orvanta {

/// Compares as numbers, tests equality as texts. A package build that is not a number makes the one on the
/// device older.
BuildVerdict compareBuilds(const QString& onDevice, const QString& inPackage);

}  // namespace orvanta
