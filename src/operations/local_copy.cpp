#include "operations/local_copy.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include "core/tools.h"
#include "operations/backup_paths.h"
#include "platform/file_moves.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

bool isTaken(const QString& path) {
  const QFileInfo info(path);
  return info.exists() || info.isSymLink();
}

/// Renames `path` to the first free name of `<path>.<word>`, `<path>.<word>2` and so on; the new path, empty
/// when that is not possible.
QString renameWith(const QString& path, const QString& word) {
  constexpr int mostNames = 1000;
  for (int number = 1; number < mostNames; ++number) {
    const QString ending = u'.' + word + (number == 1 ? QString() : QString::number(number));
    const QString name = withEnding(path, ending, HostStyle::native());
    if (isTaken(name)) continue;
    return renameNoReplace(path, name) ? name : QString();
  }
  return {};
}

}  // namespace

LocalSizes localSizes(const QString& path) {
  const QFileInfo info(path);
  if (info.isFile()) return {1, info.size()};
  LocalSizes sizes;
  QDirIterator files(path, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    files.next();
    ++sizes.files;
    sizes.bytes += files.fileInfo().size();
  }
  return sizes;
}

bool LocalCopy::exists() const {
  return isTaken(m_place);
}

bool LocalCopy::setAside() {
  if (!exists()) return true;
  m_earlier = renameWith(m_place, u"old"_s);
  return !m_earlier.isEmpty();
}

void LocalCopy::dropEarlierFile() {
  const QFileInfo info(m_earlier);
  if (m_earlier.isEmpty() || (info.isDir() && !info.isSymLink())) return;
  QFile::remove(m_earlier);
}

QCoro::Task<QString> LocalCopy::undo() {
  // A tool that was just ended may keep its file busy for a moment on some systems.
  constexpr int tries = 5;
  constexpr double betweenTries = 0.1;
  QString notes;
  QString partial;
  for (int i = 0; exists() && i < tries; ++i) {
    if (i > 0) co_await Pause(betweenTries);
    partial = renameWith(m_place, u"partial"_s);
  }
  if (exists()) {
    notes += u"不完整 (This is not complete): "_s + m_place + u"\r\n"_s;
  } else if (!partial.isEmpty()) {
    notes += u"不完整的部分保存为 (What came is not complete, and is now named): "_s + partial + u"\r\n"_s;
  }
  m_asBefore = notes.isEmpty();
  if (m_earlier.isEmpty()) co_return notes;
  if (renameNoReplace(m_earlier, m_place)) {
    notes += u"原有的备份没有改变 (The earlier copy is unchanged): "_s + m_place + u"\r\n"_s;
    m_earlier.clear();
  } else {
    m_asBefore = false;
    notes += u"原有的备份现在是 (The earlier copy is now named): "_s + m_earlier + u"\r\n"_s;
  }
  co_return notes;
}

}  // namespace orvanta
