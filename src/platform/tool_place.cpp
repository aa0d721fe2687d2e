#include "platform/tool_place.h"

#include <QDir>
#include <QFileInfo>

#include "platform/file_moves.h"
#include "platform/tool_place_parts.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString folderOfTool(const QString& folder, const QString& tool) {
  const QString inside = folder + u"/platform-tools"_s;
  return !QFileInfo::exists(folder + u'/' + tool) && QFileInfo::exists(inside + u'/' + tool) ? inside
                                                                                             : folder;
}

bool setAside(const QString& path) {
  if (!QFileInfo::exists(path)) return true;
  constexpr int most = 100;
  for (int number = 1; number <= most; ++number) {
    const QString name = path + u".old"_s + (number == 1 ? QString() : QString::number(number));
    if (!QFileInfo::exists(name)) return renameNoReplace(path, name);
  }
  return false;
}

QStringList placesOfTool(const QProcessEnvironment& environment, const QString& home,
                         const QString& programFolder) {
  QStringList folders = environment.value(u"PATH"_s).split(QDir::listSeparator(), Qt::SkipEmptyParts);
  folders << environment.value(u"ANDROID_HOME"_s) << environment.value(u"ANDROID_SDK_ROOT"_s)
          << usualToolFolders(environment, home);
  const QString own = QFileInfo(programFolder).canonicalFilePath();
  QStringList places;
  for (QString folder : folders) {
    folder.remove(u'"');  // the path of Windows may have them
    if (!QDir::isAbsolutePath(folder)) continue;
    const QString place = wholeToolIn(folder);
    if (!place.isEmpty() && place != own && !places.contains(place)) places << place;
  }
  return places;
}

}  // namespace orvanta
