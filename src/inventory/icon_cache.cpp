#include "inventory/icon_cache.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

#include "inventory/icon_reading.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr qsizetype mostKept = 2000;
constexpr qint64 largest = 64 * 1024;  // bytes; an icon that was kept has less

}  // namespace

QString IconCache::usualFolder() {
  const QString cache = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
  return cache.isEmpty() ? cache : cache + u"/icons"_s;
}

QString IconCache::path(const QString& package, const QString& build) const {
  // A name of its own length and letters, whatever the package is called.
  const QByteArray key = (package + u'\n' + build).toUtf8();
  const QByteArray hash = QCryptographicHash::hash(key, QCryptographicHash::Sha256).toHex();
  return m_folder + u'/' + QString::fromLatin1(hash.first(32)) + u".png"_s;
}

std::optional<QImage> IconCache::icon(const QString& package, const QString& build) const {
  QFile file(path(package, build));
  if (m_folder.isEmpty() || !file.open(QIODevice::ReadOnly)) return std::nullopt;
  if (file.size() == 0) return QImage();
  return iconOf(file.read(largest));
}

void IconCache::keep(const QString& package, const QString& build, const QImage& icon) const {
  if (m_folder.isEmpty() || !QDir().mkpath(m_folder)) return;
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!icon.isNull() && !icon.save(&buffer, "png")) return;
  QSaveFile file(path(package, build));
  if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()) file.commit();
}

void IconCache::trim() const {
  const QFileInfoList kept = QDir(m_folder).entryInfoList({u"*.png"_s}, QDir::Files, QDir::Time);
  for (qsizetype i = mostKept; i < kept.size(); ++i) QFile::remove(kept[i].filePath());
}

}  // namespace orvanta
