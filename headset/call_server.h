#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QStringList>
#include <QThreadPool>
#include <functional>
#include <memory>

#include "device_files.h"

namespace orvanta::headset {

/// One system command in the headset's shell: its arguments and its caller's standard handles.
class Call {
 public:
  QString command;
  QStringList arguments;
  UniqueFd input;

  void print(const QString& text) { write(m_output.get(), text.toUtf8()); }
  void printError(const QString& text) { write(m_error.get(), text.toUtf8()); }

  Call(QStringList words, UniqueFd in, UniqueFd out, UniqueFd err);

 private:
  static void write(int fd, const QByteArray& text);

  UniqueFd m_output;
  UniqueFd m_error;
};

/// Serves the shell's calls at a local socket, each on its own thread with blocking reads and writes: a
/// command may read a package of any size from its input.
class CallServer : public QObject {
  Q_OBJECT
 public:
  using Handler = std::function<int(Call&)>;

  /// `handler` runs the command and returns the exit code. It is called on several threads at once.
  explicit CallServer(Handler handler);
  ~CallServer() override;

  /// Opens the socket in `folder`; false if that fails.
  bool listen(const QString& folder);

 private:
  void acceptCall();

  Handler m_handler;
  UniqueFd m_socket;
  std::unique_ptr<QSocketNotifier> m_notifier;
  QThreadPool m_threads;
};

}  // namespace orvanta::headset
