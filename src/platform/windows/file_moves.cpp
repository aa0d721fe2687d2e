#include "platform/file_moves.h"

#include <windows.h>

#include <QDir>

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

/// The path as the system takes it. A long one gets the form that has no limit, whatever the settings of the
/// system are; nothing in that form is resolved any more.
std::wstring systemPath(const QString& path) {
  QString whole = QDir::toNativeSeparators(QDir::cleanPath(QDir::current().absoluteFilePath(path)));
  if (whole.size() >= MAX_PATH && !whole.startsWith(u"\\\\?\\")) {
    whole = whole.startsWith(u"\\\\") ? u"\\\\?\\UNC"_s + whole.mid(1) : u"\\\\?\\"_s + whole;
  }
  return whole.toStdWString();
}

}  // namespace

bool renameNoReplace(const QString& from, const QString& to) {
  const std::wstring source = systemPath(from);
  const std::wstring target = systemPath(to);
  // The system would call it done.
  if (source == target) return false;
  // Without flags it neither replaces nor copies to another drive.
  return ::MoveFileExW(source.c_str(), target.c_str(), 0) != 0;
}

}  // namespace orvanta
