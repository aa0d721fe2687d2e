#include "platform/shell_verb.h"

namespace orvanta {

RegistryPlace registryPlace(const QString& Path) {
  const qsizetype rootEnd = Path.indexOf(u'\\');
  const qsizetype last = Path.lastIndexOf(u'\\');
  if (rootEnd < 0) return {Path, QString(), QString()};
  const QString key = last > rootEnd ? Path.sliced(rootEnd + 1, last - rootEnd - 1) : QString();
  return {Path.left(rootEnd), key, Path.mid(last + 1)};
}

}  // namespace orvanta
