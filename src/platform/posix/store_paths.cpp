#include "platform/store_paths.h"

#include <stdlib.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace orvanta {

QString makeIconFolder() {
  const QString cache = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
  if (cache.isEmpty() || !QDir().mkpath(cache)) return {};
  QByteArray folder = QFile::encodeName(cache + u"/icon-XXXXXX"_s);
  if (::mkdtemp(folder.data()) == nullptr) return {};
  return QFile::decodeName(folder);
}

void leaveIconFolder(const QString& folder) {
  if (!folder.isEmpty()) ::rmdir(QFile::encodeName(folder).constData());
}

}  // namespace orvanta
