#include "apk/icon_extraction.h"

#include <QFile>
#include <QFileInfo>

#include "apk/icon_entries.h"
#include "apk/icon_picture.h"
#include "apk/package_archive.h"
#include "core/main_window.h"
#include "core/tools.h"
#include "platform/file_moves.h"
#include "platform/store_paths.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr qsizetype mostIconBytes = 16 * 1024 * 1024;

/// Only a file is renamed, and only within its folder: of a name of less than three characters the new ending
/// would eat the folder's.
bool takeZipName(const QString& apkPath, const QString& zipPath) {
  return ParentPath(apkPath) == ParentPath(zipPath) && QFileInfo(apkPath).isFile() &&
         renameNoReplace(apkPath, zipPath);
}

/// Puts the entry into a file that was not there before. A file of that name, whosever it is, is left alone.
bool extract(const QString& zipPath, const QString& entry, const QString& target) {
  const auto content = readArchiveEntry(zipPath, entry, mostIconBytes);
  if (!content) return false;
  QFile file(target);
  if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) return false;
  const bool written = file.write(*content) == content->size() && file.flush();
  if (!written) file.remove();
  return written;
}

}  // namespace

QCoro::Task<> showIcon(apkinfo& form) {
  const QString folder = makeIconFolder();
  form.TempZipPath = temporaryZipPath(form.ApkPath);
  bool renamed = false;
  bool extracted = false;
  for (const QString& entry : iconEntries(form.ManifestFields[9])) {
    // A package that bears the other name already needs no rename.
    renamed = renamed || form.TempZipPath == form.ApkPath || takeZipName(form.ApkPath, form.TempZipPath);
    form.ManifestFields[9] = entry;
    const QString name = iconFileName(entry);
    form.IconFilePath = folder + HostStyle::native().separator + name;
    // Under the other name may lie somebody else's archive; its icon would be a lie.
    extracted = renamed && !folder.isEmpty() && !name.isEmpty() &&
                extract(form.TempZipPath, entry, form.IconFilePath);
    if (extracted) break;
  }
  if (renamed && form.TempZipPath != form.ApkPath)
    form.RenameBackDue = !renameNoReplace(form.TempZipPath, form.ApkPath);
  if (extracted) {
    ShowPicture(form.IconFilePath, form.Picture1);
    QFile::remove(form.IconFilePath);
  }
  leaveIconFolder(folder);
  co_return;
}

}  // namespace orvanta
