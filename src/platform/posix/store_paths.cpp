#include "platform/store_paths.h"

#include <QDir>
#include <QStandardPaths>

#include "platform/leftovers.h"
#include "platform/private_place.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString stateFolder() {
  QString base = qEnvironmentVariable("XDG_STATE_HOME");
  if (!base.startsWith(u'/')) base = QDir::homePath() + u"/.local/state"_s;
  return base + u"/Orvanta"_s;
}

IconFolder::IconFolder(const QStringList& names) {
  const QString cache = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
  if (cache.isEmpty() || !QDir().mkpath(cache)) return;
  const QString folder = freshName(cache + u"/icon-"_s);
  QStringList files;
  for (const QString& name : names) files << folder + u'/' + name;
  m_note = noteLeftovers(files, folder);
  if (makePrivateFolder(folder)) m_path = folder;
}

IconFolder::~IconFolder() {
  if (!m_path.isEmpty()) QDir().rmdir(m_path);
  m_note.clear();
}

}  // namespace orvanta
