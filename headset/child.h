#pragma once

#include <QByteArrayList>
#include <QObject>
#include <QSocketNotifier>
#include <memory>

#include "device_files.h"

namespace orvanta::headset {

/// A process of the headset's shell. Its pipes are read only when there is room for more. Deleting the object
/// ends the process with its children.
class Child : public QObject {
  Q_OBJECT
 public:
  enum class Streams {
    Separate,  ///< standard output and standard error apart
    Merged,    ///< both in one pipe
    Terminal,  ///< a terminal of its own
  };
  enum Channel { Output = 0, Error = 1 };

  explicit Child(QObject* parent) : QObject(parent) {}
  ~Child() override;

  /// Starts `command`; false if no process could be created.
  bool start(const QByteArrayList& command, Streams streams);

  /// Asks for one readable() when a channel has something or has ended.
  void wantOutput(bool wanted);
  /// Up to `limit` bytes of a channel that is readable now; empty if there is nothing or it has ended.
  QByteArray take(Channel channel, qsizetype limit);
  /// Writes as much of `input` as the process takes now and removes it there. inputRoom() follows if some is
  /// left.
  void give(QByteArray& input);
  void closeInput();
  void setWindowSize(unsigned short rows, unsigned short columns);

  /// The process has ended and all of its output has been read.
  bool isDone() const { return m_exited && !m_outputs[Output].isOpen() && !m_outputs[Error].isOpen(); }
  int exitCode() const { return m_exitCode; }

 Q_SIGNALS:
  void readable();
  void inputRoom();
  void done();

 private:
  void watch();
  void endChannel(Channel channel);
  void reap();

  pid_t m_pid = -1;
  UniqueFd m_pidFd;
  UniqueFd m_input;
  UniqueFd m_outputs[2];
  std::unique_ptr<QSocketNotifier> m_readNotifiers[2];
  std::unique_ptr<QSocketNotifier> m_writeNotifier;
  std::unique_ptr<QSocketNotifier> m_exitNotifier;
  bool m_isTerminal = false;
  bool m_exited = false;
  int m_exitCode = 0;
};

}  // namespace orvanta::headset
