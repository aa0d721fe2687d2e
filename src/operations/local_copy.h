#pragma once

#include <QCoroTask>
#include <QString>
#include <functional>

#include "platform/journal.h"

namespace orvanta {

struct LocalSizes {
  qint64 files = 0;
  qint64 bytes = 0;
};
/// The size of the file `path`, or of all files below the folder `path`; zero if there is nothing.
LocalSizes localSizes(const QString& path);

/// The place on the desktop that a pull writes to. An earlier copy there is kept under another name until
/// this one is complete, so that a failed pull loses nothing.
class LocalCopy {
 public:
  explicit LocalCopy(QString place) : m_place(std::move(place)) {}

  const QString& place() const { return m_place; }
  bool exists() const;

  /// Notes in the journal that a copy is under way, and sets aside an earlier copy at the place. Returns an
  /// empty text if the pull may begin, else the reason for the user; then nothing has changed.
  QString begin();
  /// Adds to the note what the pull has made at the place, so that nothing else is taken for it later. False
  /// while there is nothing.
  bool noteArrival();
  /// The copy is complete: from now on it stays even if this process dies.
  void finish() { m_note.clear(); }
  /// Where the earlier copy is now; empty if there was none.
  const QString& earlier() const { return m_earlier; }
  /// Deletes the earlier copy if it is a file. A folder stays: it may hold data that no other backup has.
  void dropEarlierFile();

  /// What became of the copies that the new one has replaced.
  struct Kept {
    QString earlier;      ///< where the earlier copy is; empty if none is left
    bool binned = false;  ///< the one before it went to the waste bin
    QString couldNotBin;  ///< or is still here, since it could not
  };
  /// Keeps only one earlier copy, as `<place>.old`: an older one of the same kind under that name goes to the
  /// waste bin. An empty earlier folder is removed.
  Kept keepOneEarlier(const std::function<bool(const QString&)>& moveToWasteBin);

  /// Renames what a failed pull left to `.partial` and brings the earlier copy back. Returns the lines for
  /// the user; empty if the place is as it was.
  QCoro::Task<QString> undo();
  /// After undo(): whether everything is as before the pull.
  bool isAsBefore() const { return m_asBefore; }

  /// Does what undo() does, for a copy whose process has died.
  static Settled settle(const QJsonObject& note);

 private:
  QString m_place;
  QString m_earlier;
  bool m_asBefore = false;
  QJsonObject m_noted;
  JournalEntry m_note;
};

}  // namespace orvanta
