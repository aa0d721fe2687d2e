#pragma once

#include <QObject>
#include <memory>

namespace orvanta {

/// Requests of the system to end this process. On POSIX they are SIGTERM, SIGHUP and SIGINT, except one that
/// was ignored when the program started; a second signal ends the process at once. On Windows there are none:
/// the end of the session reaches a program through its windows.
class EndRequests : public QObject {
  Q_OBJECT

 public:
  /// One object per process.
  static std::unique_ptr<EndRequests> create();

 Q_SIGNALS:
  /// From the event loop; once.
  void asked();
};

}  // namespace orvanta
