#include "platform/tool_place.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "platform/tool_place_parts.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

QStringList filesOfTool() {
  return {u"AdbWinApi.dll"_s, u"AdbWinUsbApi.dll"_s, u"adb.exe"_s};
}

}  // namespace

ToolPlacing placeTool(const QString& folder, const QString& programFolder) {
  using Outcome = ToolPlacing::Outcome;
  const QString source = folderOfTool(folder, u"adb.exe"_s);
  if (QFileInfo(source).canonicalFilePath() == QFileInfo(programFolder).canonicalFilePath() &&
      QFileInfo::exists(source + u"/adb.exe"_s))
    return {};
  const QStringList files = filesOfTool();
  for (const QString& file : files) {
    if (!QFileInfo(source + u'/' + file).isFile())
      return {Outcome::NotThere, QDir::toNativeSeparators(source + u'/' + file)};
  }
  for (const QString& file : files) {
    const QString target = programFolder + u'/' + file;
    // The system renames a running program, and overwrites none.
    if (setAside(target) && QFile::copy(source + u'/' + file, target)) continue;
    QStringList commands;
    for (const QString& each : files)
      commands << u"copy \"%1\" \"%2\""_s.arg(QDir::toNativeSeparators(source + u'/' + each),
                                              QDir::toNativeSeparators(programFolder));
    return {Outcome::NoRight, commands.join(u" & "_s)};
  }
  return {};
}

QString wholeToolIn(const QString& folder) {
  // Some ways to install it put a link alone on the path.
  const QString place =
      QFileInfo(QFileInfo(folderOfTool(folder, u"adb.exe"_s) + u"/adb.exe"_s).canonicalFilePath()).path();
  for (const QString& file : filesOfTool()) {
    if (!QFileInfo(place + u'/' + file).isFile()) return {};
  }
  return place;
}

QStringList usualToolFolders(const QProcessEnvironment& environment, const QString& home) {
  const QString local = environment.value(u"LOCALAPPDATA"_s);
  const QString programs = environment.value(u"ProgramFiles"_s);
  const QString drive = environment.value(u"SystemDrive"_s, u"C:"_s);
  QStringList folders = {local + u"/Android/Sdk"_s,
                         environment.value(u"ProgramFiles(x86)"_s) + u"/Android/android-sdk"_s,
                         programs + u"/Android/android-sdk"_s,
                         drive + u"/Android/Sdk"_s,
                         drive + u"/platform-tools"_s,
                         home + u"/platform-tools"_s,
                         home + u"/Downloads/platform-tools"_s,
                         local + u"/Microsoft/WinGet/Links"_s,
                         programs + u"/WinGet/Links"_s};
  for (const QString& packages :
       {local + u"/Microsoft/WinGet/Packages"_s, programs + u"/WinGet/Packages"_s}) {
    for (const QString& name : QDir(packages).entryList({u"*PlatformTools*"_s}, QDir::Dirs))
      folders << packages + u'/' + name;
  }
  return folders;
}

}  // namespace orvanta
