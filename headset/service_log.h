#pragma once

#include <QFile>
#include <QString>

namespace orvanta::headset {

/// The diary of the headset: one line for each service that the desktop opened.
/// A line is the local time with milliseconds, a tab and the service's text; a control character or a
/// backslash of the text is written as \n, \t, \\ or \xNN, so that a service is one line whatever is in it.
class ServiceLog {
 public:
  /// Opens `path` for appending. A test may empty the file at any time.
  bool open(const QString& path);
  void write(const QByteArray& service);

 private:
  QFile m_file;
};

}  // namespace orvanta::headset
