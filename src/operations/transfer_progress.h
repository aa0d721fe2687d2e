#pragma once

#include <QObject>
#include <QTimer>
#include <memory>

#include "platform/child_process.h"

namespace orvanta {

class Turn;

/// While it lives, tells the turn how much of `allBytes` has arrived at `localPath`. Does nothing if no bytes
/// are expected.
class PullProgress : public QObject {
  Q_OBJECT

 public:
  PullProgress(Turn& turn, QString localPath, qint64 allBytes);
  ~PullProgress() override;

 private:
  void look();

  Turn& m_turn;
  QString m_localPath;
  qint64 m_allBytes;
  QTimer m_next;
};

/// The same for a push: `sizesLine` asks the device now and then for the sizes of what has arrived.
class PushProgress : public QObject {
  Q_OBJECT

 public:
  PushProgress(Turn& turn, QString sizesLine, qint64 allBytes);
  ~PushProgress() override;

 private:
  void ask();
  void answered();

  Turn& m_turn;
  QString m_sizesLine;
  qint64 m_allBytes;
  QTimer m_next;
  QByteArray m_reply;
  std::unique_ptr<ChildProcess> m_asking;
};

}  // namespace orvanta
