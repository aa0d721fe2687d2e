#include "adb/device_names.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvanta {

bool isFitForShell(const QString& text) {
  static const QString actedOn = u";&|$<>(){}*?!~#'\"`\\[]"_s;
  return std::none_of(text.begin(), text.end(), [](QChar c) {
    return c.isSpace() || c.category() == QChar::Other_Control || actedOn.contains(c);
  });
}

bool isFitPackageName(const QString& name) {
  constexpr qsizetype longestFileName = 255;
  const bool ascii = std::all_of(name.begin(), name.end(), [](QChar c) { return c.unicode() < 0x7F; });
  return ascii && isFitForShell(name) && name.size() <= longestFileName && !name.contains(u'/') &&
         !name.startsWith(u'-') && name != u"."_s && name != u".."_s;
}

bool isChangeable(const QString& package, const QString& permission) {
  return !package.isEmpty() && !permission.isEmpty() && isFitPackageName(package) &&
         isFitForShell(permission);
}

bool isPlainDevicePath(const QString& storage) {
  constexpr qsizetype longestPath = 4096;
  return storage.startsWith(u'/') && storage.size() <= longestPath && isFitForShell(storage);
}

QString obbFolder(const QString& storage, const QString& package) {
  return storage + u"/Android/obb/"_s + package;
}

QString obbPathOnDevice(const QString& package) {
  return obbFolder(u"/sdcard"_s, package);
}

QString dataPathOnDevice(const QString& package) {
  return dataParent + package;
}

}  // namespace orvanta
