#include <QDir>
#include <QFile>

#include "platform/run.h"

using namespace Qt::StringLiterals;

namespace orvanta {

bool runs(const QByteArray& number) {
  QFile stat(u"/proc/%1/stat"_s.arg(number.trimmed().toInt()));
  return stat.open(QIODevice::ReadOnly) && !stat.readAll().contains(") Z ");
}

qsizetype openHandles() {
  return QDir(u"/proc/self/fd"_s).count();
}

}  // namespace orvanta
