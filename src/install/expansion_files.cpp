#include "install/expansion_files.h"

#include "core/paths.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

void addEntry(ExpansionFileList& module, const QString& name, const QString& path) {
  const auto entry = static_cast<size_t>(++module.ObbFileCount);
  if (entry >= module.ObbFileNames.size()) return;
  module.ObbFileNames[entry] = name;
  module.ObbFilePaths[entry] = path;
}

}  // namespace

PackageSurroundings surroundingsOf(const QString& apkPath, const QString& package) {
  PackageSurroundings found;
  found.ApkFolder = ParentPath(apkPath);
  found.package = package;
  const QString packageFolder = found.ApkFolder + HostStyle::native().separator + found.package;
  found.hasPackageFolder = !found.ApkFolder.isEmpty() && FolderExists(packageFolder);
  found.files = filesDirectlyIn(found.hasPackageFolder ? packageFolder : found.ApkFolder);
  return found;
}

bool listExpansionFiles(const PackageSurroundings& found, const HostStyle& style, ExpansionFileList& module) {
  module.ObbFileCount = 0;
  bool ObbFound = found.hasPackageFolder;
  for (const QString& name : found.files) {
    if (found.hasPackageFolder) {
      addEntry(module, name, found.ApkFolder + found.package + style.separator + name);
      continue;
    }
    const QString tail = name.right(3).toLower();
    if (tail != u"obb"_s && tail != u"pak"_s && tail != u"zip"_s && tail != u"dle"_s) continue;
    if (tail == u"obb"_s) ObbFound = true;
    addEntry(module, name, found.ApkFolder + style.separator + name);
  }
  if (!ObbFound) module.ObbFileCount = 0;
  return ObbFound;
}

}  // namespace orvanta
