#include "platform/host_style.h"

namespace orvanta {

const HostStyle& HostStyle::posix() {
  static const HostStyle style{u'/', QString(), true};
  return style;
}

const HostStyle& HostStyle::windows() {
  static const HostStyle style{u'\\', QStringLiteral(".exe"), false};
  return style;
}

}  // namespace orvanta
