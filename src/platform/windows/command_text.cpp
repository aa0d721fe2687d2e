#include "platform/command_text.h"

#include <windows.h>

namespace orvanta {

QString commandText(int, const char* const*) {
  const QString line = QString::fromWCharArray(GetCommandLineW());
  // The program's own name ends at the first blank outside quotes; what follows is one text, blanks and all.
  bool quoted = false;
  qsizetype i = 0;
  for (; i < line.size(); ++i) {
    if (line[i] == u'"') quoted = !quoted;
    if (!quoted && (line[i] == u' ' || line[i] == u'\t')) break;
  }
  while (i < line.size() && (line[i] == u' ' || line[i] == u'\t')) ++i;
  return line.mid(i);
}

}  // namespace orvanta
