#pragma once

#include <QString>
#include <memory>

namespace orvanta {

/// A generated script on the disk, for as long as this object lives.
///
/// On POSIX it lies under a fresh name in a folder that only the user can enter, and no one else can read it.
/// On Windows it is `apkinfo.bat` in the user's temp folder.
class ScriptPlace {
 public:
  /// Writes `text`.
  explicit ScriptPlace(const QString& text);
  ~ScriptPlace();
  Q_DISABLE_COPY_MOVE(ScriptPlace)

  /// The line that runs the script; empty when it could not be written.
  QString commandLine() const { return m_commandLine; }
  /// The system's error text if it could not be written, else empty.
  QString failure() const { return m_failure; }

 private:
  struct File;
  std::unique_ptr<File> m_file;
  QString m_commandLine;
  QString m_failure;
};

}  // namespace orvanta
