#pragma once

#include <QString>

#include "platform/journal.h"

namespace orvanta {

/// A file that has another name for a while. The journal records which file it is and its own name, from
/// before the first rename until after the second, so that the name comes back even if this process dies
/// between them.
class BorrowedName {
 public:
  /// Renames the file `path` to `other`. On failure false, and nothing has changed.
  bool take(const QString& path, const QString& other);
  /// Gives the file its own name back. On failure false; the caller may try again.
  bool giveBack();

  /// The "kind" of its note.
  static const QString kind;
  /// The two paths in a note.
  static QString ownPath(const QJsonObject& note);
  static QString otherPath(const QJsonObject& note);
  /// Gives the file of a note its name back, if it is still the same file and the name is free.
  static Settled settle(const QJsonObject& note);

 private:
  QString m_path;
  QString m_other;
  JournalEntry m_note;
};

}  // namespace orvanta
