#include "queue/package_icon.h"

#include <QBuffer>
#include <QImageReader>

#include "apk/icon_entries.h"
#include "apk/package_archive.h"

namespace orvanta {

namespace {

constexpr qsizetype mostIconBytes = 16 << 20;
constexpr int largestIcon = 4096;  // dots
constexpr int shownIcon = 64;

}  // namespace

QImage pictureIn(QByteArray content) {
  QBuffer buffer(&content);
  QImageReader reader(&buffer);
  const QSize size = reader.size();
  if (!size.isValid() || size.width() > largestIcon || size.height() > largestIcon) return {};
  reader.setScaledSize(size.scaled(shownIcon, shownIcon, Qt::KeepAspectRatio));
  return reader.read();
}

QImage iconOf(const QString& path, const QString& badgingIcon) {
  const PackageArchive archive(path);
  for (const QString& entry : iconEntries(badgingIcon)) {
    const QImage icon = pictureIn(archive.read(entry, mostIconBytes).value_or(QByteArray()));
    if (!icon.isNull()) return icon;
  }
  return {};
}

}  // namespace orvanta
