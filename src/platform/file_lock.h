#pragma once

#include <QString>
#include <memory>

namespace orvanta {

/// A lock that the system releases when the process ends, however it ends. The file has no other purpose.
class FileLock {
 public:
  /// Locks the file at `path`, making it if needed. Null while any process, including this one, has the lock,
  /// or if the system cannot tell. The file is removed with the lock.
  static std::unique_ptr<FileLock> acquire(const QString& path);

  virtual ~FileLock() = default;
  Q_DISABLE_COPY_MOVE(FileLock)

 protected:
  FileLock() = default;
};

}  // namespace orvanta
