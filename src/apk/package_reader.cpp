#include "apk/package_reader.h"

#include "apk/badging.h"
#include "core/main_window.h"

namespace orvanta {

QCoro::Task<> readPackage(apkinfo& form) {
  const QString line = badgingLine(Host::current(), form.ApkPath);
  form.ToolOutput = co_await form.runQuietly(*form.objDOS, line);
  // What a stop has cut off may end in half a name.
  if (form.turn().stopped()) form.ToolOutput.clear();
  readBadging(form.ToolOutput, form.ManifestFields, form.PermissionCount);
}

}  // namespace orvanta
