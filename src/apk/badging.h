#pragma once

#include <QString>
#include <array>

#include "adb/host.h"

namespace orvanta {

/// `"<aapt>" d badging "<ApkPath>"`
QString badgingLine(const Host& host, const QString& apkPath);

/// Reads the output of `aapt d badging` into `fields` (1 package, 2 version code, 3 version name, 4 label, 5
/// "Yes" for head tracking, 9 icon path, 11 to 50 the first 40 permissions) and adds the permission lines to
/// `permissionCount`.
///
/// The text is cut at every apostrophe, and the piece after one that contains a key is its value, trimmed of
/// blanks; a later match replaces an earlier one. A field without a match stays as it was. The output begins
/// like this:
///     package: name='com.example.app' versionCode='12' versionName='1.2' ...
///     uses-permission: name='android.permission.INTERNET'
void readBadging(const QString& output, std::array<QString, 51>& fields, int& permissionCount);

/// What `aapt` says about a file that it cannot read: its first line that is not blank, cut to 300
/// characters.
///     ERROR: dump failed because no AndroidManifest.xml found
QString firstWords(const QString& output);

}  // namespace orvanta
