#include "platform/store_paths.h"

#include <QCoreApplication>
#include <QDir>

namespace orvanta {

QString makeIconFolder() {
  return QDir::toNativeSeparators(QCoreApplication::applicationDirPath());
}

void leaveIconFolder(const QString&) {}

}  // namespace orvanta
