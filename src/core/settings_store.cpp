#include "core/settings_store.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {
QString keyOf(const QString& section) {
  return section + u"/Value"_s;
}
}  // namespace

SettingsStore::SettingsStore() : m_settings(u"Orvanta"_s, u"Orvanta"_s) {}

QString SettingsStore::read(const QString& section, const QString& defaultText) const {
  return m_settings.value(keyOf(section), defaultText).toString();
}

bool SettingsStore::write(const QString& section, const QString& value) {
  m_settings.setValue(keyOf(section), value);
  m_settings.sync();
  return m_settings.status() == QSettings::NoError;
}

}  // namespace orvanta
