#include "platform/tool_place.h"

#include <QFile>
#include <QFileInfo>

#include "platform/tool_place_parts.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

QString shellQuoted(QString text) {
  return u'\'' + text.replace(u'\'', u"'\\''"_s) + u'\'';
}

}  // namespace

ToolPlacing placeTool(const QString& folder, const QString& programFolder) {
  using Outcome = ToolPlacing::Outcome;
  const QString source = folderOfTool(folder, u"adb"_s) + u"/adb"_s;
  const QString target = programFolder + u"/adb"_s;
  const QFileInfo tool(source);
  if (!tool.isFile()) return {Outcome::NotThere, source};
  if (!tool.isExecutable()) return {Outcome::NotRunnable, source};
  const QFileInfo there(target);
  // A link to itself would be all that is left of the tool.
  if (there.canonicalFilePath() == tool.canonicalFilePath()) return {};
  const bool free = there.isSymLink() ? QFile::remove(target) : setAside(target);
  if (free && QFile::link(tool.canonicalFilePath(), target)) return {};
  return {Outcome::NoRight,
          u"sudo ln -sf "_s + shellQuoted(tool.canonicalFilePath()) + u' ' + shellQuoted(target)};
}

QString wholeToolIn(const QString& folder) {
  // A link of the distribution's leads to the tool itself, which lasts longer.
  const QFileInfo tool(QFileInfo(folderOfTool(folder, u"adb"_s) + u"/adb"_s).canonicalFilePath());
  return tool.isFile() && tool.isExecutable() && tool.fileName() == u"adb" ? tool.path() : QString();
}

QStringList usualToolFolders(const QProcessEnvironment&, const QString& home) {
  QStringList folders = {u"/usr/lib/android-sdk"_s, u"/opt/android-sdk"_s, u"/usr/local/android-sdk"_s,
                         u"/opt/platform-tools"_s};
  for (const char* place : {"/Android/Sdk", "/Android/sdk", "/android-sdk", "/.android-sdk",
                            "/platform-tools", "/Downloads/platform-tools", "/.local/share/platform-tools"})
    folders << home + QLatin1StringView(place);
  return folders;
}

}  // namespace orvanta
