#include "apk/obb_discovery.h"

#include "core/main_window.h"
#include "core/tools.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {
constexpr qsizetype mostCandidates = 255;
}

bool endsInObb(const QString& name) {
  return name.endsWith("obb"_L1, Qt::CaseInsensitive);
}

void FindObbFiles(apkinfo& form) {
  const QString ApkFolder = ParentPath(form.ApkPath);
  const QString packageFolder = ApkFolder + HostStyle::native().separator + form.Label2->Caption();
  // A package given by its bare name has no folder to look beside; the doubled separator would mean the root.
  const bool ownFolder = !ApkFolder.isEmpty() && FolderExists(packageFolder);
  QStringList ObbCandidates;
  for (const QString& name : filesDirectlyIn(ownFolder ? packageFolder : ApkFolder)) {
    if (endsInObb(name)) ObbCandidates << name;
  }
  if (ObbCandidates.size() > mostCandidates) return;
  if (ownFolder) {
    form.desktop().Beep();
    for (Button* button : {form.Command1, form.Command2, form.Command3, form.Command4, form.Command5,
                           form.Command6, form.Command11, form.Command12}) {
      button->setEnabled(true);
    }
  }
  if (ObbCandidates.isEmpty()) return;
  form.say(u"Found OBB Files: "_s);
  for (const QString& name : ObbCandidates) form.txtOutputs->append(name + u"\r\n"_s);
  form.txtOutputs->moveToEnd();
}

}  // namespace orvanta
