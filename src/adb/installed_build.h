#pragma once

#include <QHash>
#include <QString>

namespace orvanta {

/// The build number in the output of `dumpsys package`: the text between the first "versionCode=" and the
/// first "minSdk=", without blanks. Empty, so not installed, when either is missing or they come in the other
/// order. Real line:
///     versionCode=83 minSdk=23 targetSdk=28
QString installedBuildIn(const QString& output);

/// Whether a reply of `dumpsys package` is about a package at all.
bool knowsPackage(const QString& reply);

/// The build of each package in the reply to `pm list packages --show-versioncode`. Real line:
///     package:com.example.game versionCode:83
QHash<QString, QString> buildsIn(const QString& reply);

}  // namespace orvanta
