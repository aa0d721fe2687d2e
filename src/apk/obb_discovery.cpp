#include "apk/obb_discovery.h"

#include "core/paths.h"
#include "core/workbench.h"
#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {
constexpr qsizetype mostCandidates = 255;
}

bool endsInObb(const QString& name) {
  return name.endsWith("obb"_L1, Qt::CaseInsensitive);
}

void FindObbFiles(Workbench& bench) {
  const QString ApkFolder = ParentPath(bench.state.package.ApkPath);
  const QString package = bench.state.package.package();
  const QString packageFolder = ApkFolder + HostStyle::native().separator + package;
  // A package given by its bare name has no folder to look beside; the doubled separator would mean the root.
  const bool ownFolder = !ApkFolder.isEmpty() && FolderExists(packageFolder);
  QStringList ObbCandidates;
  for (const QString& name : filesDirectlyIn(ownFolder ? packageFolder : ApkFolder)) {
    if (endsInObb(name)) ObbCandidates << name;
  }
  if (ObbCandidates.size() > mostCandidates) return;
  if (ownFolder) {
    bench.desktop.Beep();
    // Without a package name there is nothing to uninstall.
    if (!package.isEmpty()) bench.state.setMayUninstall(true);
  }
  if (ObbCandidates.isEmpty()) return;
  bench.say(designed(u"Found OBB Files: "));
  for (const QString& name : ObbCandidates) bench.console.append(name + u"\r\n"_s);
}

}  // namespace orvanta
