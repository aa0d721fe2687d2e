#pragma once

#include <QImage>
#include <QString>
#include <optional>

namespace orvanta {

/// The icons of apps that were on a headset before, in the user's cache.
class IconCache {
 public:
  /// `folder` need not exist.
  explicit IconCache(QString folder = usualFolder()) : m_folder(std::move(folder)) {}

  static QString usualFolder();

  /// The icon of this build of the app; a null one where it is known to have none, nothing where it is not
  /// known.
  std::optional<QImage> icon(const QString& package, const QString& build) const;
  void keep(const QString& package, const QString& build, const QImage& icon) const;
  /// Removes the icons that were kept longest ago, so that there are no more than some thousand.
  void trim() const;

 private:
  QString path(const QString& package, const QString& build) const;

  QString m_folder;
};

}  // namespace orvanta
