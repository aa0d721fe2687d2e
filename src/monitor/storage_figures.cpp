#include "monitor/storage_figures.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace orvanta {

QString storageQueryLine(const Host& host) {
  return AdbPrefix(host) + u" shell echo $EXTERNAL_STORAGE"_s;
}

QString diskFreeLine(const Host& host, const QString& path) {
  return AdbPrefix(host) + u" shell df -h "_s + path;
}

QString KeepDigits(const QString& text) {
  QString digits;
  std::copy_if(text.begin(), text.end(), std::back_inserter(digits),
               [](QChar c) { return c >= u'0' && c <= u'9'; });
  return digits;
}

std::array<QString, 5> storageFiguresIn(const QString& output) {
  std::array<QString, 5> StorageFigures;
  size_t count = 0;
  // The first character and a word that only begins with the last one are no figures.
  for (qsizetype i = 1; i + 1 < output.size(); ++i) {
    if (output[i] != u' ' || output[i + 1] == u' ') continue;
    const QString digits = KeepDigits(output.mid(i, 4));
    if (digits.isEmpty()) continue;
    if (++count == StorageFigures.size()) break;
    StorageFigures[count] = digits;
  }
  return StorageFigures;
}

std::optional<qint64> freeSpace(const QString& size, const QString& used) {
  bool sizeIsNumber = false;
  bool usedIsNumber = false;
  const qint64 difference = size.toLongLong(&sizeIsNumber) - used.toLongLong(&usedIsNumber);
  if (!sizeIsNumber || !usedIsNumber) return std::nullopt;
  return difference;
}

}  // namespace orvanta
