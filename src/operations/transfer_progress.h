#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <memory>

#include "platform/child_process.h"
#include "ui/busy_strip.h"

namespace orvanta {

using BusyStrips = QList<QPointer<BusyStrip>>;

/// While it lives, says in the strips how much of `allBytes` has come to the place `localPath`. Does nothing
/// where there are no bytes to come.
class PullProgress : public QObject {
  Q_OBJECT

 public:
  PullProgress(BusyStrips strips, QString localPath, qint64 allBytes);

 private:
  void look();

  BusyStrips m_strips;
  QString m_localPath;
  qint64 m_allBytes;
  QTimer m_next;
};

/// The same for what goes to the device: `sizesLine` asks it now and then for the sizes of what is there.
class PushProgress : public QObject {
  Q_OBJECT

 public:
  PushProgress(BusyStrips strips, QString sizesLine, qint64 allBytes);

 private:
  void ask();
  void answered();

  BusyStrips m_strips;
  QString m_sizesLine;
  qint64 m_allBytes;
  QTimer m_next;
  QByteArray m_reply;
  std::unique_ptr<ChildProcess> m_asking;
};

}  // namespace orvanta
