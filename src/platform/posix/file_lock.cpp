#include "platform/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>

namespace orvanta {

namespace {

class PosixFileLock final : public FileLock {
 public:
  PosixFileLock(QByteArray path, int file) : m_path(std::move(path)), m_file(file) {}
  ~PosixFileLock() override {
    // While it is locked, nobody else has this file or another of its name.
    ::unlink(m_path.constData());
    ::close(m_file);
  }

 private:
  QByteArray m_path;
  int m_file;
};

}  // namespace

std::unique_ptr<FileLock> FileLock::acquire(const QString& path) {
  const QByteArray name = QFile::encodeName(path);
  const int file = ::open(name.constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (file < 0) return nullptr;
  struct stat info {};
  // If another process has locked and removed this file meanwhile, it no longer excludes anybody.
  const bool ours = ::flock(file, LOCK_EX | LOCK_NB) == 0 && ::fstat(file, &info) == 0 && info.st_nlink > 0;
  if (ours) return std::make_unique<PosixFileLock>(name, file);
  ::close(file);
  return nullptr;
}

}  // namespace orvanta
