#pragma once

#include <QByteArray>
#include <QTimer>

#include "connection.h"
#include "device_files.h"

namespace orvanta::headset {

/// What the file service needs of the device.
class SyncHost {
 public:
  virtual ~SyncHost() = default;
  virtual const DeviceFiles& files() const = 0;
  virtual Faults faults() const = 0;
  /// Bytes that may still be written; a very large number on a storage without a limit.
  virtual qint64 bytesAvailable() const = 0;
};

/// The service "sync:": stat, list, send and receive, in the first and the second version of each request.
class SyncService : public Service {
 public:
  SyncService(Stream& stream, SyncHost& host);
  ~SyncService() override;

  void received(const QByteArray& block) override;
  void writable() override;

 private:
  bool parseOne();
  void handle(quint32 id, const QByteArray& path);
  void handleStat(quint32 id, const QByteArray& path);
  void handleList(quint32 id, const QByteArray& path);
  void beginSend(const QByteArray& pathAndMode);
  void takeData(const QByteArray& data);
  void endSend(quint32 modified);
  void beginReceive(const QByteArray& path);
  void fillFromFile();
  void fail(const QByteArray& reason);
  void reply(const QByteArray& bytes);
  void pump();

  struct Incoming {
    QByteArray path;
    UniqueFd file;
    QByteArray linkTarget;
    mode_t mode = 0;
    qint64 room = 0;      ///< bytes that the storage still takes
    qint64 received = 0;  ///< bytes of the file so far
    bool failed = false;
    bool active = false;
  };

  SyncHost& m_host;
  QByteArray m_in;
  QByteArray m_out;
  Incoming m_incoming;
  UniqueFd m_outgoing;
  Faults m_faults;
  QTimer m_pause;             ///< a slow headset takes it before the next block
  bool m_owesAnswer = false;  ///< a block was received and is not acknowledged yet
  qint64 m_blockSize = 0;
  bool m_ending = false;
};

}  // namespace orvanta::headset
