#pragma once

#include <QString>
#include <array>

#include "core/tools.h"

namespace orvanta {

/// `"<aapt>" d badging "<ApkPath>"`
QString badgingLine(const Host& host, const QString& apkPath);

/// Reads the output of `aapt d badging` into `fields` (1 package, 2 version code, 3 version name, 4 label, 5
/// "Yes" for head tracking, 9 icon path, 11 to 50 the first 40 permissions) and adds the permission lines to
/// `permissionCount`.
///
/// The text is cut at every apostrophe, and the piece behind one that holds a key is the value, without its
/// blanks; a later hit replaces an earlier one. What is not found leaves its field as it was. A real
/// beginning of that text:
///     package: name='com.example.app' versionCode='12' versionName='1.2' ...
///     uses-permission: name='android.permission.INTERNET'
void readBadging(const QString& output, std::array<QString, 51>& fields, int& permissionCount);

}  // namespace orvanta
