#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

namespace orvanta {

/// The manifest of a package made for a demo or a test.
struct SamplePackage {
  QString package = QStringLiteral("com.example.app");
  qint64 versionCode = 1;
  QString versionName = QStringLiteral("1.0");
  int minSdk = 23;
  int targetSdk = 29;
  QString label = QStringLiteral("Example");
  QMap<QString, QString> localizedLabels = {};  ///< by language or language and region, such as "zh-rCN"
  QStringList permissions = {};                 ///< full names
  QStringList features = {};                    ///< required features, full names
  QString split = {};                           ///< makes a split package of that name
  bool splitRequired = false;                   ///< the base cannot be installed without a split
  bool icon = false;                            ///< with a drawn picture in several sizes
  QByteArray iconPng = {};                      ///< the picture itself, instead of the drawn one
  bool launchable = true;                       ///< with an activity that a launcher shows
  bool testOnly = false;
  QStringList nativeCode = {};                ///< ABIs that a library is there for
  QMap<QString, QByteArray> extraFiles = {};  ///< by their path in the package
  qint64 paddingBytes = 0;                    ///< incompressible bytes, to make the package large

  bool hasIcon() const { return icon || !iconPng.isEmpty(); }

  /// Writes the package to `file`. On failure the reason, else an empty text.
  [[nodiscard]] QString write(const QString& file) const;
};

/// Writes a zip archive of these files, by their path in it, deflated or as they are. False on failure.
bool writeArchive(const QString& file, const QMap<QString, QByteArray>& contents, bool deflated = false);

/// The framework resources that the real aapt needs to make a package, from Debian's android-framework-res or
/// an SDK; empty if there are none.
QString frameworkResources();

}  // namespace orvanta
