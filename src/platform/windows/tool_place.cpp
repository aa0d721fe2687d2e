#include "platform/tool_place.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "platform/tool_place_parts.h"

using namespace Qt::StringLiterals;

namespace orvanta {

ToolPlacing placeTool(const QString& folder, const QString& programFolder) {
  using Outcome = ToolPlacing::Outcome;
  const QString source = folderOfTool(folder, u"adb.exe"_s);
  if (QFileInfo(source).canonicalFilePath() == QFileInfo(programFolder).canonicalFilePath() &&
      QFileInfo::exists(source + u"/adb.exe"_s))
    return {};
  const QStringList files = {u"AdbWinApi.dll"_s, u"AdbWinUsbApi.dll"_s, u"adb.exe"_s};
  for (const QString& file : files) {
    if (!QFileInfo(source + u'/' + file).isFile())
      return {Outcome::NotThere, QDir::toNativeSeparators(source + u'/' + file)};
  }
  for (const QString& file : files) {
    const QString target = programFolder + u'/' + file;
    // The system renames a running program, and overwrites none.
    if (setAside(target) && QFile::copy(source + u'/' + file, target)) continue;
    return {Outcome::NoRight,
            u"copy \"%1\\{%2}\" \"%3\""_s.arg(QDir::toNativeSeparators(source), files.join(u", "_s),
                                              QDir::toNativeSeparators(programFolder))};
  }
  return {};
}

}  // namespace orvanta
