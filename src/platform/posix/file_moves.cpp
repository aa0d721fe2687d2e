#include "platform/file_moves.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <cerrno>

namespace orvanta {

bool renameNoReplace(const QString& from, const QString& to) {
  const QByteArray source = QFile::encodeName(from);
  const QByteArray target = QFile::encodeName(to);
  if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) == 0)
    return true;
  // Not every file system can rename this way; a hard link never replaces a file either.
  if (errno != EINVAL && errno != ENOSYS) return false;
  struct stat kind {};
  if (::lstat(source.constData(), &kind) == 0 && S_ISDIR(kind.st_mode)) {
    // A folder cannot have a hard link, but an ordinary rename never replaces a file or a filled folder by a
    // folder.
    struct stat taken {};
    return ::lstat(target.constData(), &taken) != 0 && errno == ENOENT &&
           ::rename(source.constData(), target.constData()) == 0;
  }
  if (::link(source.constData(), target.constData()) != 0) return false;
  if (::unlink(source.constData()) == 0) return true;
  ::unlink(target.constData());
  return false;
}

bool moveToWasteBin(const QString& path) {
  // If the user has no waste bin and none can be made, the toolkit would use the current folder.
  const QString home = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  const QString bin = home + QStringLiteral("/Trash");
  if (!QDir().mkpath(home) || !QFileInfo(QFileInfo::exists(bin) ? bin : home).isWritable()) return false;
  return QFile::moveToTrash(path);
}

}  // namespace orvanta
