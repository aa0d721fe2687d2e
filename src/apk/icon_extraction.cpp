#include "apk/icon_extraction.h"

#include <QFile>
#include <QFileInfo>
#include <optional>

#include "apk/icon_entries.h"
#include "apk/icon_picture.h"
#include "apk/package_archive.h"
#include "core/paths.h"
#include "core/state.h"
#include "platform/store_paths.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr qsizetype mostIconBytes = 16 * 1024 * 1024;

/// Renames files only, and only within their folder: with a name shorter than three characters the new ending
/// would overwrite part of the folder's.
bool takeZipName(LoadedPackage& package) {
  const QString& apkPath = package.ApkPath;
  const QString& zipPath = package.TempZipPath;
  return ParentPath(apkPath) == ParentPath(zipPath) && QFileInfo(apkPath).isFile() &&
         package.packageName.take(apkPath, zipPath);
}

/// Writes the entry to a new file. An existing file of that name is left alone.
bool extract(const PackageArchive& archive, const QString& entry, const QString& target) {
  const auto content = archive.read(entry, mostIconBytes);
  if (!content) return false;
  QFile file(target);
  if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) return false;
  const bool written = file.write(*content) == content->size() && file.flush();
  if (!written) file.remove();
  return written;
}

}  // namespace

QCoro::Task<> showIcon(LoadedPackage& package, PictureBox* picture) {
  const QStringList entries = iconEntries(package.ManifestFields[FieldIcon]);
  QStringList names;
  for (const QString& entry : entries) names << iconFileName(entry);
  const IconFolder iconFolder(names);
  const QString folder = iconFolder.path();
  package.TempZipPath = temporaryZipPath(package.ApkPath);
  std::optional<PackageArchive> archive;
  bool renamed = false;
  bool extracted = false;
  for (const QString& entry : entries) {
    // A package that already ends in "zip" needs no rename.
    renamed = renamed || package.TempZipPath == package.ApkPath || takeZipName(package);
    package.ManifestFields[FieldIcon] = entry;
    const QString name = iconFileName(entry);
    package.IconFilePath = folder + HostStyle::native().separator + name;
    // Without the rename, the file of that name is another archive with another icon.
    if (renamed && !archive) archive.emplace(package.TempZipPath);
    extracted =
        archive && !folder.isEmpty() && !name.isEmpty() && extract(*archive, entry, package.IconFilePath);
    if (extracted) break;
  }
  // Some systems refuse to rename an open file.
  archive.reset();
  if (renamed && package.TempZipPath != package.ApkPath)
    package.RenameBackDue = !package.packageName.giveBack();
  if (extracted) {
    ShowPicture(package.IconFilePath, picture);
    QFile::remove(package.IconFilePath);
  }
  co_return;
}

}  // namespace orvanta
