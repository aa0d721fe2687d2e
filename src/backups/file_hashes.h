#pragma once

#include <QCoroTask>
#include <QHash>
#include <QList>
#include <QMutex>
#include <QString>
#include <QThread>
#include <QWaitCondition>
#include <atomic>
#include <memory>

#include "text/bilingual.h"

namespace orvanta {

/// A file on the desktop, and the size that it is to have.
struct ExpectedFile {
  QString path;
  qint64 size = 0;
};

/// Reads files right after the tool that writes them, on its own thread, so that their hashes are ready when
/// the tool ends and nothing is read from the disk twice. Needs one block of memory, however large the files
/// are.
class FollowingHashes {
 public:
  /// Begins at once. The files may come in any order; each is written from its beginning to its end.
  explicit FollowingHashes(QList<ExpectedFile> files);
  ~FollowingHashes();
  Q_DISABLE_COPY_MOVE(FollowingHashes)

  /// Bytes that have come so far.
  qint64 bytes() const { return m_bytes; }
  /// SHA-256 in hexadecimal of each file that has all its bytes, by its path.
  QHash<QString, QByteArray> complete() const;
  /// The tool has ended: what is there is read to its end. Returns what complete() has then.
  QCoro::Task<QHash<QString, QByteArray>> finish();

 private:
  void follow(const QList<ExpectedFile>& files);
  void end();

  mutable QMutex m_mutex;
  QWaitCondition m_end;
  QHash<QString, QByteArray> m_complete;
  std::atomic<qint64> m_bytes = 0;
  std::atomic<bool> m_ended = false;
  std::atomic<bool> m_dropped = false;
  std::unique_ptr<QThread> m_thread;
};

/// A file as a check expects it.
struct HashedFile {
  QString path;
  qint64 size = 0;
  QByteArray sha256;  ///< in hexadecimal; empty where only the size is known
};

/// Compares files with what is known of them, on a thread of its own.
class FileCheck {
 public:
  explicit FileCheck(QList<HashedFile> files);
  ~FileCheck();
  Q_DISABLE_COPY_MOVE(FileCheck)

  qint64 bytes() const { return m_bytes; }
  void stop() { m_stopped = true; }

  /// What is the matter with a file.
  struct Finding {
    QString path;
    Bilingual fault;
  };
  /// Waits for the end. Empty where all is well, and after a stop.
  QCoro::Task<QList<Finding>> findings();

 private:
  QList<Finding> m_findings;
  std::atomic<qint64> m_bytes = 0;
  std::atomic<bool> m_stopped = false;
  std::unique_ptr<QThread> m_thread;
};

}  // namespace orvanta
