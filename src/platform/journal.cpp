#include "platform/journal.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <QSet>
#include <QUuid>
#include <optional>

#include "platform/file_lock.h"
#include "platform/store_paths.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

const QString noteEnding = u".json"_s;
const QString lockEnding = u".lock"_s;

QString journalFolder() {
  const QString folder = stateFolder();
  return folder.isEmpty() ? QString() : folder + u"/journal"_s;
}

/// This process as the owner of its notes. The name is never reused, and the lock tells whether the process
/// lives. A process number alone would not: the system reuses it.
class Owner {
 public:
  /// The path of an owner that has not been used yet.
  static QString newName() {
    return u"%1/%2-%3"_s.arg(journalFolder())
        .arg(QCoreApplication::applicationPid())
        .arg(QUuid::createUuid().toString(QUuid::Id128));
  }
  /// The path for one more note; empty when there can be none.
  QString begin() {
    if (!m_lock && !takeName()) return {};
    ++m_notes;
    return m_base + u'-' + QString::number(++m_number) + noteEnding;
  }
  void end() {
    if (--m_notes == 0) m_lock.reset();
  }
  /// Goes by the name, since the path of its folder can be written in several ways.
  bool has(const QString& fileName) const {
    return m_notes > 0 && fileName.startsWith(QFileInfo(m_base).fileName() + u'-');
  }

 private:
  bool takeName() {
    const QString folder = journalFolder();
    if (folder.isEmpty()) return false;
    if (!QDir(folder).exists()) {
      QDir().mkpath(stateFolder());
      QDir().mkdir(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    constexpr int tries = 3;  // another process that cleans up can remove a new lock file before it is locked
    for (int i = 0; i < tries && !m_lock; ++i) {
      m_base = newName();
      m_lock = FileLock::acquire(m_base + lockEnding);
    }
    return m_lock != nullptr;
  }

  QString m_base;
  std::unique_ptr<FileLock> m_lock;
  int m_number = 0;
  int m_notes = 0;
};

Owner& thisProcess() {
  static Owner owner;
  return owner;
}

bool write(const QString& path, const QJsonObject& content) {
  QSaveFile file(path);
  const QByteArray text = QJsonDocument(content).toJson();
  return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
}

/// Nothing if it cannot be read; an empty object if it is not a note.
std::optional<QJsonObject> read(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
  return QJsonDocument::fromJson(file.readAll()).object();
}

Settled settleOne(const QString& path, const std::function<Settled(const QJsonObject&)>& settle) {
  // A file with another ending was not finished as a note, or is being removed.
  if (!path.endsWith(noteEnding)) return {};
  const auto content = read(path);
  if (!content) return {false};
  return content->isEmpty() ? Settled() : settle(*content);
}

QStringList namesIn(const QDir& folder, const QString& pattern) {
  return folder.entryList({pattern}, QDir::Files | QDir::Hidden, QDir::Name);
}

}  // namespace

JournalEntry::JournalEntry(const QJsonObject& content) : m_path(thisProcess().begin()) {
  if (m_path.isEmpty() || write(m_path, content)) return;
  thisProcess().end();
  m_path.clear();
}

void JournalEntry::rewrite(const QJsonObject& content) const {
  if (!m_path.isEmpty()) write(m_path, content);
}

void JournalEntry::abandon() {
  if (m_path.isEmpty()) return;
  // Another owner's name, whose lock nobody holds.
  if (!QFile::rename(m_path, Owner::newName() + u"-1"_s + noteEnding)) return;
  m_path.clear();
  thisProcess().end();
}

void JournalEntry::clear() {
  if (m_path.isEmpty()) return;
  QFile::remove(m_path);
  m_path.clear();
  thisProcess().end();
}

QStringList settleJournal(const std::function<Settled(const QJsonObject&)>& settle) {
  QStringList lines;
  const QString path = journalFolder();
  const QDir folder(path);
  if (path.isEmpty() || !folder.exists()) return lines;
  QSet<QString> owners;
  for (const QString& name : namesIn(folder, u"*-*"_s))
    owners << name.section(u'-', 0, 1).section(u'.', 0, 0);
  for (const QString& owner : std::as_const(owners)) {
    const auto lock = FileLock::acquire(folder.filePath(owner + lockEnding));
    if (!lock) continue;
    for (const QString& name : namesIn(folder, owner + u"-*"_s)) {
      const QString file = folder.filePath(name);
      const Settled settled = settleOne(file, settle);
      if (settled.over) QFile::remove(file);
      if (!settled.line.isEmpty()) lines << settled.line;
    }
  }
  return lines;
}

QList<QJsonObject> notesOfOthers() {
  QList<QJsonObject> notes;
  const QString path = journalFolder();
  if (path.isEmpty()) return notes;
  const QDir folder(path);
  for (const QString& name : namesIn(folder, u'*' + noteEnding)) {
    if (!thisProcess().has(name)) notes << read(folder.filePath(name)).value_or(QJsonObject());
  }
  return notes;
}

}  // namespace orvanta
