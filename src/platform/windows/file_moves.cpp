#include "platform/file_moves.h"

#include <QFile>
#include <QFileInfo>

#include "platform/windows/system_path.h"

namespace orvanta {

bool renameNoReplace(const QString& from, const QString& to) {
  const std::wstring source = systemPath(from);
  const std::wstring target = systemPath(to);
  // The system would report success.
  if (source == target) return false;
  // Without flags it neither replaces nor copies to another drive.
  return ::MoveFileExW(source.c_str(), target.c_str(), 0) != 0;
}

bool moveToWasteBin(const QString& path) {
  return QFile::moveToTrash(path) && !QFileInfo::exists(path);
}

}  // namespace orvanta
