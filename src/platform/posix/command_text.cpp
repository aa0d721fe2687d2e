#include "platform/command_text.h"

#include <QFile>
#include <QStringList>

namespace orvanta {

QString commandText(int argc, const char* const* argv) {
  QStringList words;
  for (int i = 1; i < argc; ++i) words << QFile::decodeName(argv[i]);
  return words.join(u' ');
}

}  // namespace orvanta
