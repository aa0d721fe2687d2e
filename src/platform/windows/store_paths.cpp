#include "platform/store_paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "platform/leftovers.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString stateFolder() {
  QString base = qEnvironmentVariable("LOCALAPPDATA");
  if (base.isEmpty()) base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  return base.isEmpty() ? base : base + u"/Orvanta"_s;
}

IconFolder::IconFolder(const QStringList& names)
    : m_path(QDir::toNativeSeparators(QCoreApplication::applicationDirPath())) {
  QStringList files;
  for (const QString& name : names) {
    const QString file = m_path + u'\\' + name;
    // An existing file is not ours.
    if (!QFileInfo::exists(file)) files << file;
  }
  m_note = noteLeftovers(files);
}

IconFolder::~IconFolder() {
  m_note.clear();
}

}  // namespace orvanta
