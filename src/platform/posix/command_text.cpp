#include "platform/command_text.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QStringList>

namespace orvanta {

QStringList commandWords(int argc, const char* const* argv) {
  QStringList words;
  for (int i = 1; i < argc; ++i) words << QFile::decodeName(argv[i]);
  return words;
}

QString commandText(int argc, const char* const* argv) {
  return commandWords(argc, argv).join(u' ');
}

bool startAgain(const QString& text) {
  const QStringList words = text.isEmpty() ? QStringList() : QStringList(text);
  return QProcess::startDetached(QCoreApplication::applicationFilePath(), words);
}

}  // namespace orvanta
