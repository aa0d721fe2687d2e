#pragma once

#include <QString>
#include <QStringList>

#include "platform/journal.h"

namespace orvanta {

/// The user's folder for what the program keeps between runs; it may not exist yet. Empty if the system names
/// none.
QString stateFolder();

/// A folder for the package's icon between extraction and drawing: on POSIX a new one in the user's cache
/// that nobody else can enter, on Windows the program's own, which can hold other files. A new one is removed
/// with this object if it is empty; if the program dies first, the next start removes it with its content.
class IconFolder {
 public:
  /// `names`: the file names that the icon may get.
  explicit IconFolder(const QStringList& names);
  ~IconFolder();
  Q_DISABLE_COPY_MOVE(IconFolder)

  /// Without a separator at its end; empty if the folder could not be made.
  QString path() const { return m_path; }

 private:
  QString m_path;
  JournalEntry m_note;
};

}  // namespace orvanta
