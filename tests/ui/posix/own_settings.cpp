#include "ui/own_settings.h"

#include <QSettings>

namespace orvanta {

OwnSettings::OwnSettings(const QString& folder) {
  // The variable of the environment is read once a process; this holds from now on.
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder);
}

OwnSettings::~OwnSettings() = default;

}  // namespace orvanta
