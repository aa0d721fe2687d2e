#pragma once

#include <QJsonObject>
#include <QList>
#include <QStringList>
#include <functional>

/// The journal of what is under way: a note in the user's state folder for each thing that would be wrong if
/// the program died now. It is written before, cleared after, and always complete on the disk.
namespace orvanta {

/// One note of this process. A note that is not cleared stays for the next start of the program.
///
/// If the state folder cannot be written, work continues without notes.
class JournalEntry {
 public:
  JournalEntry() = default;
  /// Writes `content`; its "kind" says who sets it right.
  explicit JournalEntry(const QJsonObject& content);
  JournalEntry(JournalEntry&& other) noexcept : m_path(std::exchange(other.m_path, {})) {}
  JournalEntry& operator=(JournalEntry&& other) noexcept {
    m_path = std::exchange(other.m_path, {});
    return *this;
  }
  JournalEntry(const JournalEntry&) = delete;
  JournalEntry& operator=(const JournalEntry&) = delete;
  ~JournalEntry() = default;

  /// Replaces the content, once the thing has gone a step further. On failure the old one stays.
  void rewrite(const QJsonObject& content) const;
  /// This process can do no more about the thing: the note counts as that of a dead process from now on.
  void abandon();
  /// The noted thing is finished. Does nothing if nothing is noted.
  void clear();

 private:
  QString m_path;
};

/// The result of setting right what a dead process left.
struct Settled {
  bool over = true;   ///< else the note stays for a later time
  QString line = {};  ///< for the user; may be empty
};

/// Passes each note of a dead process to `settle`, which sets the thing right. Returns the lines for the
/// user. Notes of living processes are left alone, and no two programs settle the same note.
QStringList settleJournal(const std::function<Settled(const QJsonObject&)>& settle);

/// The notes of other processes: of living ones, and those that could not be settled.
QList<QJsonObject> notesOfOthers();

}  // namespace orvanta
