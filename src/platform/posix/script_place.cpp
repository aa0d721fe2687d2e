#include "platform/script_place.h"

#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include "platform/command_line.h"

using namespace Qt::StringLiterals;

namespace orvanta {

struct ScriptPlace::File {
  // The folder goes last, when it is empty.
  std::unique_ptr<QTemporaryDir> folder;
  std::unique_ptr<QTemporaryFile> script;

  /// Creates the script in `path`, exclusively and for the user alone. The system's words on failure.
  QString write(const QString& path, const QByteArray& text);
};

QString ScriptPlace::File::write(const QString& path, const QByteArray& text) {
  script = std::make_unique<QTemporaryFile>(path + u"/orvanta-XXXXXX.sh"_s);
  if (script->open() && script->write(text) == text.size() && script->flush()) return {};
  const QString failure = script->errorString();
  script.reset();
  return failure.isEmpty() ? path : failure;
}

ScriptPlace::ScriptPlace(const QString& text) : m_file(std::make_unique<File>()) {
  const QByteArray bytes = text.toUtf8();
  const QString runTime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  if (!runTime.isEmpty()) m_failure = m_file->write(runTime, bytes);
  if (!m_file->script) {
    m_file->folder = std::make_unique<QTemporaryDir>();
    m_failure = m_file->folder->isValid() ? m_file->write(m_file->folder->path(), bytes)
                                          : m_file->folder->errorString();
  }
  if (m_file->script) m_commandLine = u"/bin/sh "_s + quotedArgument(m_file->script->fileName());
}

ScriptPlace::~ScriptPlace() = default;

}  // namespace orvanta
