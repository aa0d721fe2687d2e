#include "core/paths.h"

#include <QCollator>
#include <QDir>
#include <QFileInfo>
#include <algorithm>

namespace orvanta {

QString ParentPath(const QString& path, const HostStyle& style) {
  return path.left(path.lastIndexOf(style.separator) + 1);
}

QString BaseName(const QString& path, const HostStyle& style) {
  const QString name = path.mid(path.lastIndexOf(style.separator) + 1);
  return name.mid(name.lastIndexOf(u'/') + 1);
}

QString absolutePath(const QString& path) {
  return QDir::toNativeSeparators(QDir::current().absoluteFilePath(path));
}

bool FolderExists(const QString& sFolder) {
  return !sFolder.isEmpty() && QFileInfo(sFolder).isDir();
}

QStringList filesDirectlyIn(const QString& folder) {
  if (folder.isEmpty()) return {};
  QStringList names = QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::Readable, QDir::NoSort);
  // The C locale would compare bytes in any mode.
  QCollator byValue{QLocale(QLocale::English)};
  byValue.setNumericMode(true);
  byValue.setCaseSensitivity(Qt::CaseInsensitive);
  std::sort(names.begin(), names.end(), [&byValue](const QString& a, const QString& b) {
    const int order = byValue.compare(a, b);
    return order != 0 ? order < 0 : a < b;
  });
  return names;
}

}  // namespace orvanta
