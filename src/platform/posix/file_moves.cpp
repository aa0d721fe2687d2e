#include "platform/file_moves.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>

namespace orvanta {

bool renameNoReplace(const QString& from, const QString& to) {
  const QByteArray source = QFile::encodeName(from);
  const QByteArray target = QFile::encodeName(to);
  if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) == 0)
    return true;
  // Not every file system can rename this way; a second name for the file never replaces one either.
  if (errno != EINVAL && errno != ENOSYS) return false;
  struct stat kind {};
  if (::lstat(source.constData(), &kind) == 0 && S_ISDIR(kind.st_mode)) {
    // A folder can have no second name; but an ordinary rename replaces no file by it, and no folder that
    // holds any.
    struct stat taken {};
    return ::lstat(target.constData(), &taken) != 0 && errno == ENOENT &&
           ::rename(source.constData(), target.constData()) == 0;
  }
  if (::link(source.constData(), target.constData()) != 0) return false;
  if (::unlink(source.constData()) == 0) return true;
  ::unlink(target.constData());
  return false;
}

}  // namespace orvanta
