#include "platform/file_sync.h"

#include <QDirIterator>
#include <QFileInfo>

#include "platform/windows/system_path.h"

namespace orvanta {

namespace {

bool syncFile(const QString& path) {
  constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  HANDLE file =
      ::CreateFileW(systemPath(path).c_str(), GENERIC_WRITE, shareAll, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const bool done = ::FlushFileBuffers(file) != 0;
  ::CloseHandle(file);
  return done;
}

}  // namespace

bool syncToDisk(const QString& path) {
  const QFileInfo info(path);
  if (!info.isDir()) return syncFile(path);
  bool all = true;
  QDirIterator files(path, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
  while (files.hasNext()) all = syncFile(files.next()) && all;
  return all;
}

void beginSync(const QFileDevice&, qint64, qint64) {}

}  // namespace orvanta
