#include "platform/color_scheme.h"

#include <QSettings>

using namespace Qt::StringLiterals;

namespace orvanta {

ColorScheme desktopColorScheme() {
  const QByteArray wish = qgetenv("ORVANTA_COLOR_SCHEME");
  if (wish == "dark") return ColorScheme::Dark;
  if (wish == "light") return ColorScheme::Light;
  const QSettings personalize(
      u"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize"_s,
      QSettings::NativeFormat);
  return personalize.value(u"AppsUseLightTheme"_s, 1).toInt() == 0 ? ColorScheme::Dark : ColorScheme::Light;
}

}  // namespace orvanta
