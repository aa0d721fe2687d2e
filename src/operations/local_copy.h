#pragma once

#include <QCoroTask>
#include <QString>

namespace orvanta {

struct LocalSizes {
  qint64 files = 0;
  qint64 bytes = 0;
};
/// The size of the file `path`, or of all files below the folder `path`; nothing for what is not there.
LocalSizes localSizes(const QString& path);

/// The place on the desktop that a pull writes to. What stood there before is kept under another name until
/// the copy is complete, so that a pull that fails takes nothing away.
class LocalCopy {
 public:
  explicit LocalCopy(QString place) : m_place(std::move(place)) {}

  const QString& place() const { return m_place; }
  bool exists() const;

  /// Renames what stands at the place, if anything does. False when it cannot be renamed; nothing has changed
  /// then.
  bool setAside();
  /// Where the earlier copy is now; empty when there was none.
  const QString& earlier() const { return m_earlier; }
  /// Deletes the earlier copy if it is a file. A folder stays: it may hold what is in no backup.
  void dropEarlierFile();

  /// Gives what a failed pull left a name that says that it is partial, and the earlier copy its own name
  /// back. Returns what the user has to know of it, a line each; empty when the place is as it was.
  QCoro::Task<QString> undo();
  /// After undo(): whether all is as if there had been no pull.
  bool isAsBefore() const { return m_asBefore; }

 private:
  QString m_place;
  QString m_earlier;
  bool m_asBefore = false;
};

}  // namespace orvanta
