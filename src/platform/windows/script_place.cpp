#include "platform/script_place.h"

#include <windows.h>

#include <QFile>
#include <algorithm>
#include <array>

#include "platform/leftovers.h"

using namespace Qt::StringLiterals;

namespace orvanta {

struct ScriptPlace::File {
  explicit File(const QString& path) : script(path) {}
  ~File() {
    if (made) script.remove();
    note.clear();
  }
  QFile script;
  bool made = false;  // else the file is not ours
  JournalEntry note;
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
  // its console, line by line. By default that is not UTF-8.
  const QByteArray bytes = "@chcp 65001 >nul\r\n" + text.toUtf8();
  m_file->made = script.open(QIODevice::WriteOnly | QIODevice::NewOnly);
  if (m_file->made && script.write(bytes) == bytes.size() && script.flush()) {
    script.close();
    // Only after it is made: the name is shared, and the next script of that name is not this one.
    m_file->note = noteLeftover(ScriptPath);
    // Quotes only if the system or the command processor would split the path.
    const auto needsQuotes = [](QChar c) { return u" &()[]{}^=;!'+,`"_s.contains(c); };
    m_commandLine = std::any_of(ScriptPath.begin(), ScriptPath.end(), needsQuotes) ? u'"' + ScriptPath + u'"'
                                                                                   : ScriptPath;
  } else {
    m_failure = script.errorString();
  }
}

ScriptPlace::~ScriptPlace() = default;

}  // namespace orvanta
