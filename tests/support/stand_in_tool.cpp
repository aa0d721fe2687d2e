// Placed beside a test program under the names of the tools, it records how it was called and does what the
// test has prepared for such a call. Both are files in the folder that ORVANTA_STAND_IN names; stand_in.h
// writes and reads them.
#include <QCoreApplication>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QThread>
#include <cstdio>
#include <utility>

#include "support/received_line.h"

using namespace Qt::StringLiterals;

namespace {

void write(const QString& path, QIODevice::OpenMode mode, const QString& text) {
  QFile file(path);
  if (file.open(mode)) file.write(text.toUtf8());
}

/// Brings the files of a pull: a path that ends in a slash is a folder, an empty one the place itself.
void bring(const QList<std::pair<QString, QString>>& files, const QStringList& words) {
  QString place = words.constLast();
  // Into an existing folder it goes under its name on the device.
  if (QFileInfo(place).isDir()) place += u'/' + words[words.size() - 2].section(u'/', -1);
  for (const auto& [name, content] : files) {
    const QString path = name.isEmpty() ? place : place + u'/' + name;
    QDir().mkpath(path.section(u'/', 0, -2));
    if (!path.endsWith(u'/')) write(path, QIODevice::WriteOnly, content);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const QDir folder(qEnvironmentVariable("ORVANTA_STAND_IN"));
  const QStringList words = QCoreApplication::arguments().mid(1);
  const QString call = words.join(u' ');
  write(folder.filePath(u"calls"_s), QIODevice::Append, call + u'\n');
  write(folder.filePath(u"lines"_s), QIODevice::Append,
        QString::fromStdString(receivedLine(argc, argv)) + u'\n');

  QFile file(folder.filePath(u"answers"_s));
  if (!file.open(QIODevice::ReadOnly)) return 0;
  QDataStream answers(&file);
  while (!answers.atEnd()) {
    QString pattern;
    QList<std::pair<QString, QString>> files;
    QString reply;
    bool hangs = false;
    answers >> pattern >> files >> reply >> hangs;
    const QString expression = QRegularExpression::escape(pattern).replace(u"\\*"_s, u".*"_s);
    if (!QRegularExpression(QRegularExpression::anchoredPattern(expression)).match(call).hasMatch()) continue;
    if (!files.isEmpty()) bring(files, words);
    std::fputs(reply.toUtf8().constData(), stdout);
    std::fflush(stdout);
    if (hangs) QThread::sleep(60);  // so that a failed test leaves nothing running
    return 0;
  }
  return 0;
}
