#pragma once

#include <QList>
#include <QString>

#include "packages.h"

namespace orvanta::headset {

/// "dumpsys package NAME" in the layout of Android 10, with the headings that stand before the packages.
QString packageReport(const QList<Package>& packages);

/// The same for a package that the headset does not know.
QString unknownPackageReport(const QString& name);

}  // namespace orvanta::headset
