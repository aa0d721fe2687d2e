#include "platform/script_place.h"

#include <windows.h>

#include <QFile>
#include <array>

using namespace Qt::StringLiterals;

namespace orvanta {

struct ScriptPlace::File {
  explicit File(const QString& path) : script(path) {}
  ~File() {
    if (made) script.remove();
  }
  QFile script;
  bool made = false;  // else the file is somebody else's
};

ScriptPlace::ScriptPlace(const QString& text) {
  std::array<char, 255> folder = {};
  const DWORD length = ::GetTempPathA(static_cast<DWORD>(folder.size()), folder.data());
  // The folder already ends in a separator; the second one does no harm.
  const QString ScriptPath =
      QString::fromLocal8Bit(folder.data(), static_cast<qsizetype>(qMin<size_t>(length, folder.size()))) +
      u"\\apkinfo.bat"_s;
  m_file = std::make_unique<File>(ScriptPath);
  QFile& script = m_file->script;
  script.remove();
  const QByteArray bytes = text.toLocal8Bit();
  m_file->made = script.open(QIODevice::WriteOnly | QIODevice::NewOnly);
  if (m_file->made && script.write(bytes) == bytes.size() && script.flush()) {
    script.close();
    m_commandLine = ScriptPath;
  } else {
    m_failure = script.errorString();
  }
}

ScriptPlace::~ScriptPlace() = default;

}  // namespace orvanta
