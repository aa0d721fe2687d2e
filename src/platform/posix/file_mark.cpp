#include "platform/file_mark.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QFile>

using namespace Qt::StringLiterals;

namespace orvanta {

QString fileMark(const QString& path) {
  struct stat info {};
  if (::lstat(QFile::encodeName(path).constData(), &info) != 0) return {};
  // Without the device number: after a reboot the same disk can have another. With the time of birth, where
  // there is one: the number of a file that is gone is used again.
  QString number = QString::number(info.st_ino);
  struct statx more {};
  const bool known =
      ::statx(AT_FDCWD, QFile::encodeName(path).constData(), AT_SYMLINK_NOFOLLOW, STATX_BTIME, &more) == 0;
  if (known && (more.stx_mask & STATX_BTIME) != 0)
    number += u'/' + QString::number(more.stx_btime.tv_sec) + u'.' + QString::number(more.stx_btime.tv_nsec);
  // A folder's size and time change with what lies in it.
  if (S_ISDIR(info.st_mode)) return u"folder "_s + number;
  return u"file %1 %2 %3.%4"_s.arg(number)
      .arg(info.st_size)
      .arg(info.st_mtim.tv_sec)
      .arg(info.st_mtim.tv_nsec);
}

}  // namespace orvanta
