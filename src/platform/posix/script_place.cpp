#include "platform/script_place.h"

#include <QFile>
#include <QStandardPaths>

#include "platform/command_line.h"
#include "platform/leftovers.h"
#include "platform/private_place.h"

using namespace Qt::StringLiterals;

namespace orvanta {

struct ScriptPlace::File {
  ~File() { remove(); }

  /// Creates the script in `folder`, exclusively and for the user alone. `ownFolder` is the same if it has to
  /// be made first. On failure the system's error text.
  QString write(const QString& folder, const QString& ownFolder, const QByteArray& text);
  void remove();

  JournalEntry note;
  QFile script;
  QString folder;  // made for the script
};

QString ScriptPlace::File::write(const QString& place, const QString& ownFolder, const QByteArray& text) {
  const QString path = freshName(place + u"/orvanta-"_s) + u".sh"_s;
  note = noteLeftovers({path}, ownFolder);
  if (!ownFolder.isEmpty() && !makePrivateFolder(ownFolder)) {
    note.clear();
    return ownFolder;
  }
  folder = ownFolder;
  script.setFileName(path);
  constexpr QFile::Permissions userAlone = QFile::ReadOwner | QFile::WriteOwner;
  if (script.open(QIODevice::WriteOnly | QIODevice::NewOnly, userAlone) &&
      script.write(text) == text.size() && script.flush()) {
    return {};
  }
  const QString failure = script.errorString();
  remove();
  return failure;
}

void ScriptPlace::File::remove() {
  // Open only if it was made here.
  if (script.isOpen()) script.remove();
  if (!folder.isEmpty()) QDir().rmdir(folder);
  folder.clear();
  note.clear();
}

ScriptPlace::ScriptPlace(const QString& text) : m_file(std::make_unique<File>()) {
  const QByteArray bytes = text.toUtf8();
  const QString runTime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  const bool hasRunTime = !runTime.isEmpty();
  if (hasRunTime) m_failure = m_file->write(runTime, QString(), bytes);
  if (!hasRunTime || !m_failure.isEmpty()) {
    const QString own = freshName(QDir::tempPath() + u"/orvanta-"_s);
    m_failure = m_file->write(own, own, bytes);
  }
  if (m_failure.isEmpty()) m_commandLine = u"/bin/sh "_s + quotedArgument(m_file->script.fileName());
}

ScriptPlace::~ScriptPlace() = default;

}  // namespace orvanta
