#include "core/borrowed_name.h"

#include <QFileInfo>

#include "core/paths.h"
#include "platform/file_mark.h"
#include "platform/file_moves.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

const QString BorrowedName::kind = u"name"_s;

bool BorrowedName::take(const QString& path, const QString& other) {
  // The next start may be in another folder.
  const QString from = absolutePath(path);
  const QString to = absolutePath(other);
  JournalEntry note({{u"kind"_s, kind}, {u"path"_s, from}, {u"other"_s, to}, {u"mark"_s, fileMark(from)}});
  if (!renameNoReplace(from, to)) {
    note.clear();
    return false;
  }
  m_path = from;
  m_other = to;
  m_note = std::move(note);
  return true;
}

bool BorrowedName::giveBack() {
  if (!renameNoReplace(m_other, m_path)) return false;
  m_note.clear();
  return true;
}

QString BorrowedName::ownPath(const QJsonObject& note) {
  return note[u"path"].toString();
}

QString BorrowedName::otherPath(const QJsonObject& note) {
  return note[u"other"].toString();
}

Settled BorrowedName::settle(const QJsonObject& note) {
  const QString path = ownPath(note);
  const QString other = otherPath(note);
  const QString mark = note[u"mark"].toString();
  const QString both = other + u" → "_s + path;
  const bool isOther = fileMark(other) == mark;
  if (mark.isEmpty() || fileMark(path) == mark || (!isOther && isAlike(path, mark))) return {};
  // A disk that is missing now may come back.
  if (!QFileInfo::exists(QFileInfo(path).path())) return {false};
  if (!isOther && !isAlike(other, mark)) {
    return {
        true,
        inFace(
            u"上次运行中断时改了名的安装包已不在原处，没有再改名"_s,
            u"The package whose name was changed when an earlier run was cut short is no longer there; nothing was renamed"_s) +
            u": "_s + both};
  }
  if (renameNoReplace(other, path)) {
    return {true, inFace(u"上次运行中断，已恢复安装包的文件名"_s,
                         u"An earlier run was cut short; the package has its name back"_s) +
                      u": "_s + both};
  }
  const QFileInfo taken(path);
  return {
      taken.exists() || taken.isSymLink(),
      inFace(
          u"上次运行中断，安装包的文件名没有恢复，请自行改名"_s,
          u"An earlier run was cut short and the package could not be given its name back; please rename it"_s) +
          u": "_s + both};
}

}  // namespace orvanta
