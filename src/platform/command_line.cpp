#include "platform/command_line.h"

namespace orvanta {

using namespace Qt::StringLiterals;

namespace {

bool separates(QChar c) {
  return c == u' ' || c == u'\t';
}

/// Takes the program's name from `line` at `at`, and moves `at` past it.
QString takeProgram(QStringView line, qsizetype& at) {
  QString program;
  bool quoted = false;
  for (; at < line.size() && (quoted || !separates(line[at])); ++at) {
    if (line[at] == u'"') {
      quoted = !quoted;
    } else {
      program += line[at];
    }
  }
  return program;
}

/// Takes the next argument from `line` at `at`, and moves `at` past it.
QString takeArgument(QStringView line, qsizetype& at) {
  QString argument;
  bool quoted = false;
  while (at < line.size() && (quoted || !separates(line[at]))) {
    qsizetype backslashes = 0;
    for (; at < line.size() && line[at] == u'\\'; ++at) ++backslashes;
    const bool beforeQuote = at < line.size() && line[at] == u'"';
    argument += QString(beforeQuote ? backslashes / 2 : backslashes, u'\\');
    if (beforeQuote) {
      const bool escaped = backslashes % 2 == 1;
      const bool doubled = !escaped && quoted && at + 1 < line.size() && line[at + 1] == u'"';
      if (escaped || doubled) {
        argument += u'"';
      } else {
        quoted = !quoted;
      }
      at += doubled ? 2 : 1;
    } else if (backslashes == 0) {
      argument += line[at++];
    }
  }
  return argument;
}

}  // namespace

QStringList splitCommandLine(const QString& line) {
  QStringList words;
  const QStringView view = line;
  for (qsizetype at = 0;;) {
    while (at < view.size() && separates(view[at])) ++at;
    if (at == view.size()) return words;
    words += words.isEmpty() ? takeProgram(view, at) : takeArgument(view, at);
  }
}

QString quotedArgument(const QString& text) {
  QString quoted = u"\""_s;
  qsizetype backslashes = 0;
  for (const QChar c : text) {
    if (c == u'"') quoted += QString(backslashes + 1, u'\\');
    backslashes = c == u'\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  return quoted + QString(backslashes, u'\\') + u'"';
}

}  // namespace orvanta
