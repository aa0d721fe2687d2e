#include "platform/script_place.h"

#include <windows.h>

#include <QFile>
#include <algorithm>
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
  std::array<char, 3 * (MAX_PATH + 1)> folder = {};  // a character takes up to three bytes
  const DWORD length = ::GetTempPathA(static_cast<DWORD>(folder.size()), folder.data());
  // The folder already ends in a separator; the second one does no harm.
  const QString ScriptPath =
      QString::fromLocal8Bit(folder.data(), static_cast<qsizetype>(length)) + u"\\apkinfo.bat"_s;
  m_file = std::make_unique<File>(ScriptPath);
  QFile& script = m_file->script;
  script.remove();
  // The command processor reads a script, and passes on what the tools of the script say, in the code page of
  // its console, line by line. That is not this program's UTF-8 by itself.
  const QByteArray bytes = "@chcp 65001 >nul\r\n" + text.toUtf8();
  m_file->made = script.open(QIODevice::WriteOnly | QIODevice::NewOnly);
  if (m_file->made && script.write(bytes) == bytes.size() && script.flush()) {
    script.close();
    // Quotes only where the system's look-up or the command processor would take the path apart.
    const auto needsQuotes = [](QChar c) { return u" &()[]{}^=;!'+,`"_s.contains(c); };
    m_commandLine = std::any_of(ScriptPath.begin(), ScriptPath.end(), needsQuotes) ? u'"' + ScriptPath + u'"'
                                                                                   : ScriptPath;
  } else {
    m_failure = script.errorString();
  }
}

ScriptPlace::~ScriptPlace() = default;

}  // namespace orvanta
