#pragma once

#include <QCoroTask>
#include <QString>
#include <QStringList>
#include <QThread>
#include <atomic>
#include <memory>

#include "platform/journal.h"
#include "queue/bundle.h"

namespace orvanta {

/// The chosen parts of a bundle as files in a folder of their own, which nobody else can enter. It goes with
/// this object, and at the next start where the program dies first.
class UnpackedBundle {
 public:
  /// Unpacks nothing yet. The folder is made on a disk that has the room for all, with preference for that of
  /// the user's cache; `problem` tells where there is none.
  UnpackedBundle(const QString& bundle, const BundleChoice& choice);
  ~UnpackedBundle();
  Q_DISABLE_COPY_MOVE(UnpackedBundle)

  /// Unpacks on a thread of its own. What went wrong; empty when all is there.
  QCoro::Task<Bilingual> unpack();
  qint64 bytes() const { return m_bytes; }  ///< that are there so far
  void stop() { m_stopped = true; }

  QStringList packages() const { return m_packages; }
  QStringList expansionFiles() const { return m_expansionFiles; }

 private:
  Bilingual unpackAll();

  QString m_bundle;
  BundleChoice m_choice;
  QString m_folder;
  Bilingual m_problem;
  QStringList m_packages;
  QStringList m_expansionFiles;
  JournalEntry m_note;
  std::atomic<qint64> m_bytes = 0;
  std::atomic<bool> m_stopped = false;
  std::unique_ptr<QThread> m_thread;
};

}  // namespace orvanta
