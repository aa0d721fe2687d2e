#include "platform/file_moves.h"

#include <windows.h>

#include <QDir>

namespace orvanta {

bool renameNoReplace(const QString& from, const QString& to) {
  const std::wstring source = QDir::toNativeSeparators(from).toStdWString();
  const std::wstring target = QDir::toNativeSeparators(to).toStdWString();
  // Without flags it neither replaces nor copies to another drive.
  return ::MoveFileExW(source.c_str(), target.c_str(), 0) != 0;
}

}  // namespace orvanta
