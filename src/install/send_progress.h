#pragma once

#include <QObject>
#include <QTimer>

namespace orvanta {

class DOSOutputs;
class Turn;

/// While it lives, tells `turn` how much has been sent of several files together, from what the tools of
/// `runner` have read of them. Says nothing where the system does not tell.
class SendProgress : public QObject {
  Q_OBJECT

 public:
  /// `allBytes` are those of all files.
  SendProgress(Turn& turn, const DOSOutputs& runner, qint64 allBytes);
  ~SendProgress() override;

  /// So many bytes are to come after those that are through; where they turn out to be other ones.
  void setBytesToCome(qint64 bytes) { m_allBytes = m_throughBytes + bytes; }
  /// The next run sends a file of so many bytes.
  void beginFile(qint64 bytes) { m_fileBytes = bytes; }
  /// It has ended.
  void endFile();

 private:
  void look();

  Turn& m_turn;
  const DOSOutputs& m_runner;
  qint64 m_allBytes;
  qint64 m_throughBytes = 0;
  qint64 m_fileBytes = 0;
  QTimer m_interval;
};

}  // namespace orvanta
