#pragma once

#include <windows.h>

#include <QDir>
#include <QString>
#include <string>

namespace orvanta {

/// The path as the system takes it. A long one gets the form without a length limit, in which the system
/// resolves nothing.
inline std::wstring systemPath(const QString& path) {
  using namespace Qt::StringLiterals;
  QString whole = QDir::toNativeSeparators(QDir::cleanPath(QDir::current().absoluteFilePath(path)));
  if (whole.size() >= MAX_PATH && !whole.startsWith(u"\\\\?\\")) {
    whole = whole.startsWith(u"\\\\") ? u"\\\\?\\UNC"_s + whole.mid(1) : u"\\\\?\\"_s + whole;
  }
  return whole.toStdWString();
}

}  // namespace orvanta
