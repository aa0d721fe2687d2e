#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <memory>
#include <optional>

namespace orvanta {

/// One outside program, started from one command line, with no standard input.
///
/// Its standard output and standard error share one pipe. The run ends when that pipe ends, even if a
/// grandchild is the last to hold it, or the program itself continues without it. Works on the event loop of
/// the thread that started it; use an object for one run only. Deleting a running object ends the tool as
/// kill() does, without the signals. A slot may call kill() or delete the object.
class ChildProcess : public QObject {
  Q_OBJECT

 public:
  /// Why a run could not begin, with the operating system's error number.
  struct StartFailure {
    enum class Step { Pipe, Process };
    Step step;
    quint32 error;
  };

  /// The child process of this operating system.
  static std::unique_ptr<ChildProcess> create();

  /// Starts `commandLine` (quotes group, a backslash is literal except before a quote; the first word names
  /// the program, a bare name is looked up beside the executable and then on the path). Nothing is returned
  /// on success; on failure neither signal ever comes.
  [[nodiscard]] virtual std::optional<StartFailure> start(const QString& commandLine) = 0;

  /// Ends the tool with its children. `finished` still comes, after the output that can still be read:
  /// usually at once, and within a third of a second if a process that left the tool's group holds the pipe.
  /// Does nothing before the start or after the end.
  virtual void kill() = 0;

  /// Bytes that the tool itself, without its children, has read so far, including some 10 KB for its own
  /// start. On Linux the bytes that it has sent to a server on this computer and that the server has not read
  /// yet, several megabytes, are subtracted, so that this tells how far a file sent through a server has
  /// come. Nothing while no run is on, or where the system does not say.
  virtual std::optional<qint64> bytesRead() const = 0;

 Q_SIGNALS:
  /// The next 1 to 256 bytes of output, every line end presented as one CR LF.
  void block(const QByteArray& bytes);
  /// The pipe has ended; emitted once, from the event loop, never from inside start() or kill().
  void finished();

 protected:
  using QObject::QObject;
};

}  // namespace orvanta
