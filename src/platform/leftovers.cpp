#include "platform/leftovers.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>

#include "platform/file_mark.h"

using namespace Qt::StringLiterals;

namespace orvanta {

const QString leftoversKind = u"leftovers"_s;

JournalEntry noteLeftovers(const QStringList& files, const QString& folder) {
  return JournalEntry(
      {{u"kind"_s, leftoversKind}, {u"files"_s, QJsonArray::fromStringList(files)}, {u"folder"_s, folder}});
}

JournalEntry noteLeftover(const QString& file) {
  return JournalEntry(
      {{u"kind"_s, leftoversKind}, {u"files"_s, QJsonArray{file}}, {u"mark"_s, fileMark(file)}});
}

bool removeLeftovers(const QJsonObject& note) {
  bool any = false;
  const QString mark = note[u"mark"].toString();
  for (const auto& value : note[u"files"].toArray()) {
    const QString file = value.toString();
    if (!QFileInfo(file).isFile() || QFileInfo(file).isSymLink()) continue;
    if (mark.isEmpty() || fileMark(file) == mark) any |= QFile::remove(file);
  }
  const QString folder = note[u"folder"].toString();
  return (!folder.isEmpty() && QDir().rmdir(folder)) || any;
}

}  // namespace orvanta
