#include "platform/tool_place.h"

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

}  // namespace orvanta
