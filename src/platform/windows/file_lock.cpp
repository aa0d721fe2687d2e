#include "platform/file_lock.h"

#include <windows.h>

#include <QDir>

namespace orvanta {

namespace {

class WindowsFileLock final : public FileLock {
 public:
  explicit WindowsFileLock(HANDLE file) : m_file(file) {}
  ~WindowsFileLock() override { ::CloseHandle(m_file); }

 private:
  HANDLE m_file;
};

}  // namespace

std::unique_ptr<FileLock> FileLock::acquire(const QString& path) {
  const std::wstring name = QDir::toNativeSeparators(path).toStdWString();
  // Not shared with anybody: that is the lock.
  HANDLE file = ::CreateFileW(name.c_str(), GENERIC_READ | DELETE, 0, nullptr, OPEN_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (file == INVALID_HANDLE_VALUE) return nullptr;
  return std::make_unique<WindowsFileLock>(file);
}

}  // namespace orvanta
