#include "ui/own_settings.h"

#include <QSettings>

namespace orvanta {

OwnSettings::OwnSettings(const QString& folder) {
  // The environment variable is read once per process; this works later too.
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder);
  qputenv("XDG_STATE_HOME", (folder + QStringLiteral("/state")).toUtf8());
}

OwnSettings::~OwnSettings() = default;

}  // namespace orvanta
