#include "platform/command_text.h"

#include <windows.h>

#include <shellapi.h>

#include <QCoreApplication>
#include <QProcess>
#include <vector>

#include "platform/windows/program_name.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

bool separates(QChar c) {
  return c == u' ' || c == u'\t';
}

/// The length of the unquoted path in front of `line`, with or without the suffix; 0 when it is not there.
qsizetype plainName(const QString& line, const QString& program) {
  const qsizetype length = program.size();
  for (const qsizetype size : {length, length - u".exe"_s.size()}) {
    const bool ends = size > 0 && (line.size() == size || (line.size() > size && separates(line[size])));
    if (ends && line.startsWith(program.left(size), Qt::CaseInsensitive)) return size;
  }
  return 0;
}

QString modulePath() {
  std::vector<wchar_t> path(MAX_PATH);
  for (;;) {
    const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) return QString::fromWCharArray(path.data(), static_cast<qsizetype>(length));
    path.resize(path.size() * 2);
  }
}

}  // namespace

QString textBehindProgram(const QString& line, const QString& program) {
  qsizetype at = plainName(line, program);
  bool quoted = false;
  for (; at < line.size() && (quoted || !separates(line[at])); ++at) {
    if (line[at] == u'"') quoted = !quoted;
  }
  while (at < line.size() && separates(line[at])) ++at;
  return line.mid(at);
}

QString commandText(int, const char* const*) {
  return textBehindProgram(QString::fromWCharArray(::GetCommandLineW()), modulePath());
}

QStringList commandWords(int, const char* const*) {
  int count = 0;
  wchar_t** const words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  QStringList found;
  for (int i = 1; words != nullptr && i < count; ++i) found << QString::fromWCharArray(words[i]);
  ::LocalFree(words);
  return found;
}

bool startAgain(const QString& text) {
  QProcess program;
  program.setProgram(QCoreApplication::applicationFilePath());
  // The text is one path, blanks and all, as it was.
  program.setNativeArguments(text);
  return program.startDetached();
}

}  // namespace orvanta
