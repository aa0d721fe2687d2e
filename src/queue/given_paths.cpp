#include "queue/given_paths.h"

#include <QCollator>
#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>

#include "core/paths.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr QLatin1StringView bundleEndings[] = {".apks"_L1, ".xapk"_L1, ".apkm"_L1};
constexpr int mostLookedAt = 100'000;
constexpr qsizetype mostPackages = 1000;

bool isPackage(const QString& name) {
  return name.endsWith(".apk"_L1, Qt::CaseInsensitive) || isBundle(name);
}

/// The packages in `folder`; false when there may be more.
bool addPackagesIn(const QString& folder, QStringList& packages) {
  QStringList found;
  QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  int looked = 0;
  while (files.hasNext() && looked < mostLookedAt) {
    const QString path = files.next();
    ++looked;
    if (isPackage(files.fileName())) found << absolutePath(path);
  }
  QCollator byValue{QLocale(QLocale::English)};
  byValue.setNumericMode(true);
  std::sort(found.begin(), found.end(), byValue);
  packages << found;
  return !files.hasNext();
}

}  // namespace

bool isBundle(const QString& name) {
  return std::any_of(std::begin(bundleEndings), std::end(bundleEndings), [&name](QLatin1StringView ending) {
    return name.endsWith(ending, Qt::CaseInsensitive);
  });
}

GivenPaths readGiven(const QStringList& paths) {
  GivenPaths given;
  for (const QString& path : paths) {
    const QFileInfo info(path);
    if (info.isDir()) {
      given.tooMany |= !addPackagesIn(path, given.packages);
    } else if (!info.isFile()) {
      given.others << path;
    } else if (isPackage(info.fileName())) {
      given.packages << absolutePath(path);
    } else if (info.fileName().endsWith(".obb"_L1, Qt::CaseInsensitive)) {
      given.expansionFiles << absolutePath(path);
    } else {
      given.others << path;
    }
  }
  given.packages.removeDuplicates();
  given.expansionFiles.removeDuplicates();
  given.tooMany |= given.packages.size() > mostPackages;
  if (given.packages.size() > mostPackages) given.packages.resize(mostPackages);
  return given;
}

QString packageOfExpansionFile(const QString& name) {
  static const QRegularExpression form(u"^(?:main|patch)\\.[0-9]+\\.(.+)\\.obb$"_s,
                                       QRegularExpression::CaseInsensitiveOption);
  return form.match(name).captured(1);
}

QStringList severalPaths(const QString& commandText, const QStringList& words) {
  if (words.size() < 2 || QFileInfo::exists(commandText)) return {};
  const bool any =
      std::any_of(words.begin(), words.end(), [](const QString& word) { return QFileInfo::exists(word); });
  return any ? words : QStringList();
}

}  // namespace orvanta
