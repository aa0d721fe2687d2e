#include "backups/copy_note.h"

#include <QDir>
#include <algorithm>

#include "core/paths.h"
#include "platform/journal.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

const QString copyNoteKind = u"copy"_s;
const Bilingual copyUnderway = {u"这个备份没有完成"_s, u"this backup is not complete"_s};

QString notedPath(const QString& path) {
  return QDir::toNativeSeparators(QDir::cleanPath(absolutePath(path)));
}

bool isUnderway(const QString& path) {
  const QList<QJsonObject> notes = notesOfOthers();
  return std::any_of(notes.begin(), notes.end(), [place = notedPath(path)](const QJsonObject& note) {
    return note[u"kind"].toString() == copyNoteKind && note[u"place"].toString() == place;
  });
}

}  // namespace orvanta
