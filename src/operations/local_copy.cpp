#include "operations/local_copy.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include "backups/copy_kind.h"
#include "backups/copy_note.h"
#include "core/pause.h"
#include "operations/backup_paths.h"
#include "platform/file_mark.h"
#include "platform/file_moves.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

bool isTaken(const QString& path) {
  const QFileInfo info(path);
  return info.exists() || info.isSymLink();
}

constexpr int mostNames = 1000;
const QString earlierWord = u"old"_s;

// What a note says of how far its copy is.
const QString stepKey = u"step"_s;
const QString stepNoted = u"noted"_s;
const QString stepSetAside = u"set aside"_s;
const QString arrivedKey = u"arrived"_s;

/// `<path>.<word>` for the number 1, then `<path>.<word>2` and so on.
QString numberedName(const QString& path, const QString& word, int number) {
  const QString ending = u'.' + word + (number == 1 ? QString() : QString::number(number));
  return withEnding(path, ending, HostStyle::native());
}

/// The first free numbered name; empty if all are taken.
QString freeName(const QString& path, const QString& word) {
  for (int number = 1; number < mostNames; ++number) {
    const QString name = numberedName(path, word, number);
    if (!isTaken(name)) return name;
  }
  return {};
}

/// Renames what an interrupted copy left at `place` to a name that says so. Returns that name; empty on
/// failure.
QString renamePartial(const QString& place) {
  const QString name = freeName(place, u"partial"_s);
  return !name.isEmpty() && renameNoReplace(place, name) ? name : QString();
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

QString LocalCopy::begin() {
  const QString place = notedPath(m_place);
  const QString aside = exists() ? freeName(m_place, earlierWord) : QString();
  m_noted = {{u"kind"_s, copyNoteKind},
             {u"place"_s, place},
             {u"earlier"_s, aside.isEmpty() ? aside : notedPath(aside)},
             {u"mark"_s, aside.isEmpty() ? aside : fileMark(m_place)},
             {stepKey, stepNoted}};
  m_note = JournalEntry(m_noted);
  // After our own note is written: if two begin at the same moment, each sees the other's.
  QString problem;
  if (isUnderway(place)) {
    problem = inFace(u"这里还有一次没有结束的备份，没有开始备份"_s,
                     u"Another backup to this place has not ended; none was begun"_s) +
              u": "_s;
  } else if (exists() && !renameNoReplace(m_place, aside)) {
    problem = inFace(u"原有的文件不能改名，没有开始备份"_s,
                     u"The earlier copy cannot be renamed; no backup was begun"_s) +
              u": "_s;
  } else {
    m_earlier = aside;
    m_noted[stepKey] = stepSetAside;
    m_note.rewrite(m_noted);
    return {};
  }
  m_note.clear();
  return problem + m_place;
}

bool LocalCopy::noteArrival() {
  const QString mark = fileMark(m_place);
  if (mark.isEmpty()) return false;
  m_noted[arrivedKey] = mark;
  m_note.rewrite(m_noted);
  return true;
}

void LocalCopy::dropEarlierFile() {
  const QFileInfo info(m_earlier);
  if (m_earlier.isEmpty() || (info.isDir() && !info.isSymLink())) return;
  if (QFile::remove(m_earlier)) m_earlier.clear();
}

LocalCopy::Kept LocalCopy::keepOneEarlier(const std::function<bool(const QString&)>& moveToWasteBin) {
  Kept kept;
  if (m_earlier.isEmpty() || QDir().rmdir(m_earlier)) return kept;
  const CopyKind kindOfEarlier = copyKindAt(m_earlier);
  for (int number = 1; number < mostNames; ++number) {
    const QString name = numberedName(m_place, earlierWord, number);
    // A copy of another kind is not an earlier one of this.
    if (name == m_earlier || !isTaken(name) || copyKindAt(name) != kindOfEarlier) continue;
    if (!moveToWasteBin(name)) {
      kept.couldNotBin = name;
      break;
    }
    if (!kept.binned && renameNoReplace(m_earlier, name)) m_earlier = name;
    kept.binned = true;
  }
  kept.earlier = m_earlier;
  return kept;
}

QCoro::Task<QString> LocalCopy::undo() {
  // On some systems a tool that was just ended keeps its file busy for a moment.
  constexpr int tries = 5;
  constexpr double betweenTries = 0.1;
  QString notes;
  QString partial;
  for (int i = 0; exists() && i < tries; ++i) {
    if (i > 0) co_await Pause(betweenTries);
    partial = renamePartial(m_place);
  }
  if (exists()) {
    notes += inFace(u"不完整"_s, u"This is not complete"_s) + u": "_s + m_place + u"\r\n"_s;
  } else if (!partial.isEmpty()) {
    notes += inFace(u"不完整的部分保存为"_s, u"What came is not complete, and is now named"_s) + u": "_s +
             partial + u"\r\n"_s;
  }
  const bool halfStays = exists();
  m_asBefore = notes.isEmpty();
  if (m_earlier.isEmpty()) {
    // Nothing to bring back.
  } else if (renameNoReplace(m_earlier, m_place)) {
    notes +=
        inFace(u"原有的备份没有改变"_s, u"The earlier copy is unchanged"_s) + u": "_s + m_place + u"\r\n"_s;
    m_earlier.clear();
  } else {
    m_asBefore = false;
    notes +=
        inFace(u"原有的备份现在是"_s, u"The earlier copy is now named"_s) + u": "_s + m_earlier + u"\r\n"_s;
  }
  if (halfStays) {
    m_note.abandon();
  } else {
    m_note.clear();
  }
  co_return notes;
}

Settled LocalCopy::settle(const QJsonObject& note) {
  const QString place = note[u"place"].toString();
  const QString earlier = note[u"earlier"].toString();
  const QString mark = note[u"mark"].toString();
  // A disk that is missing now may come back.
  if (!QFileInfo::exists(QFileInfo(place).path())) return {false};
  // It was not set aside yet, or is back already.
  if (!mark.isEmpty() && fileMark(place) == mark) return {};
  const bool hasEarlier = !earlier.isEmpty() && isTaken(earlier);
  const bool wasSetAside = note[stepKey].toString() == stepSetAside;
  QStringList words;
  if (isTaken(place)) {
    // The same on a disk that numbers its files anew.
    if (!hasEarlier && !earlier.isEmpty() && (!wasSetAside || isAlike(place, mark))) return {};
    const bool isHalf = (hasEarlier && wasSetAside) || isItself(place, note[arrivedKey].toString());
    if (!isHalf) {
      return {
          false,
          inFace(
              u"上次运行中断时正在备份到这里，这是什么无法确定，请查看后改名或移走"_s,
              u"An earlier run was cut short while it made a backup here. What this is cannot be told; please look, and rename or move it"_s) +
              u": "_s + place};
    }
    const QString partial = renamePartial(place);
    if (partial.isEmpty()) {
      return {false, inFace(u"上次运行中断，这个备份不完整"_s,
                            u"An earlier run was cut short; this backup is not complete"_s) +
                         u": "_s + place};
    }
    words << inFace(u"上次运行中断，备份没有完成，已有的部分保存为"_s,
                    u"An earlier run was cut short; its backup is not complete, and is now named"_s) +
                 u": "_s + partial;
  }
  if (hasEarlier && (wasSetAside || fileMark(earlier) == mark || isAlike(earlier, mark))) {
    const bool isBack = renameNoReplace(earlier, place);
    words << (isBack ? inFace(u"上次运行中断，原有的备份已恢复"_s,
                              u"An earlier run was cut short; the earlier copy is back"_s) +
                           u": "_s + place
                     : inFace(u"上次运行中断，原有的备份现在是"_s,
                              u"An earlier run was cut short; the earlier copy is now named"_s) +
                           u": "_s + earlier);
  }
  return {true, words.join(u"\r\n"_s)};
}

}  // namespace orvanta
