#include "operations/backup_paths.h"

#include "core/paths.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString withApkEnding(const QString& path) {
  const QString ending = u".apk"_s;
  return path.right(ending.size()).toLower() == ending ? path : path + ending;
}

QString restoreFolder(const QString& chosen, const QString& package, const HostStyle& style) {
  QString folder = chosen;
  return folder.remove(style.separator + package);
}

QString withEnding(const QString& path, const QString& ending, const HostStyle& style) {
  // Common file systems limit a name to 255 units: bytes on some, UTF-16 units on others.
  constexpr qsizetype longestName = 255;
  const QString folder = ParentPath(path, style);
  QString name = path.mid(folder.size());
  while (!name.isEmpty() && name.toUtf8().size() + ending.toUtf8().size() > longestName) {
    name.chop(name.size() > 1 && name.back().isLowSurrogate() ? 2 : 1);
  }
  return folder + name + ending;
}

}  // namespace orvanta
