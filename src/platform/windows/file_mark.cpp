#include "platform/file_mark.h"

#include "platform/windows/system_path.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString fileMark(const QString& path) {
  constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  constexpr DWORD itself =
      FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT;  // folders and links too
  HANDLE file = ::CreateFileW(systemPath(path).c_str(), FILE_READ_ATTRIBUTES, shareAll, nullptr,
                              OPEN_EXISTING, itself, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  BY_HANDLE_FILE_INFORMATION info = {};
  const bool known = ::GetFileInformationByHandle(file, &info) != 0;
  ::CloseHandle(file);
  if (!known) return {};
  const auto joined = [](DWORD high, DWORD low) { return quint64(high) << 32U | low; };
  const QString number =
      u"%1 %2"_s.arg(info.dwVolumeSerialNumber).arg(joined(info.nFileIndexHigh, info.nFileIndexLow));
  // A folder's time changes with what lies in it.
  if ((info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return u"folder "_s + number;
  const FILETIME& written = info.ftLastWriteTime;
  return u"file %1 %2 %3"_s.arg(number)
      .arg(joined(info.nFileSizeHigh, info.nFileSizeLow))
      .arg(joined(written.dwHighDateTime, written.dwLowDateTime));
}

}  // namespace orvanta
