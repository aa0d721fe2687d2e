#include "desktop/registry_entry.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString executablePath(const QString& applicationFolder, const QString& name) {
  const QString separator = applicationFolder.endsWith(u'\\') ? QString() : u"\\"_s;
  return applicationFolder + separator + name + u".exe"_s;
}

std::array<RegistryWrite, 3> shellVerbWrites(const QString& executable) {
  const QString verb = u"HKCR\\*\\shell\\Orvanta\\"_s;
  const QString text = u"REG_SZ"_s;
  return {{
      {verb + u"Command\\"_s, executable + u" %1"_s, text},
      {verb + u"AppliesTo"_s, u".apk"_s, text},
      {verb + u"Icon"_s, executable, text},
  }};
}

}  // namespace orvanta
