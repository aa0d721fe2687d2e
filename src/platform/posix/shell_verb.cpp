#include "platform/shell_verb.h"

namespace orvanta {

ShellVerbHome nativeShellVerbHome() {
  return ShellVerbHome::DesktopEntries;
}

bool RegWrite(const QString&, const QString&, const QString&) {
  return false;
}

}  // namespace orvanta
