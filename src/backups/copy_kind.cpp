#include "backups/copy_kind.h"

#include <QDirIterator>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace orvanta {

CopyKind copyKindAt(const QString& path) {
  const QFileInfo info(path);
  if (!info.exists() && !info.isSymLink()) return CopyKind::Nothing;
  if (!info.isDir()) return CopyKind::File;
  QDirIterator entries(path, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
  if (!entries.hasNext()) return CopyKind::Nothing;
  bool expansion = false;
  while (entries.hasNext()) {
    entries.next();
    if (entries.fileInfo().isDir()) return CopyKind::Data;
    expansion = expansion || entries.fileName().endsWith(".obb"_L1, Qt::CaseInsensitive);
  }
  return expansion ? CopyKind::ExpansionFiles : CopyKind::Data;
}

}  // namespace orvanta
