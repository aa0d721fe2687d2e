#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include "system.h"

namespace orvanta::headset {

using namespace Qt::StringLiterals;

Properties::Properties(const QString& file, const QString& serial) : m_file(file) {
  m_values = {
      {u"dalvik.vm.heapsize"_s, u"512m"_s},
      {u"persist.sys.locale"_s, u"en-US"_s},
      {u"persist.sys.timezone"_s, u"UTC"_s},
      {u"persist.sys.usb.config"_s, u"adb"_s},
      {u"ro.build.type"_s, u"user"_s},
      {u"ro.build.version.release"_s, u"10"_s},
      {u"ro.build.version.sdk"_s, u"29"_s},
      {u"ro.product.brand"_s, u"Quest"_s},
      {u"ro.product.cpu.abi"_s, u"arm64-v8a"_s},
      {u"ro.product.cpu.abilist"_s, u"arm64-v8a,armeabi-v7a,armeabi"_s},
      {u"ro.product.device"_s, u"hollywood"_s},
      {u"ro.product.locale"_s, u"en-US"_s},
      {u"ro.product.model"_s, u"Quest 2"_s},
      {u"ro.product.name"_s, u"hollywood"_s},
      {u"ro.serialno"_s, serial},
      {u"ro.sf.lcd_density"_s, u"560"_s},
      {u"sys.boot_completed"_s, u"1"_s},
      {u"sys.usb.config"_s, u"adb"_s},
  };
  QFile stored(m_file);
  if (!stored.open(QIODevice::ReadOnly)) return;
  const QJsonObject json = QJsonDocument::fromJson(stored.readAll()).object();
  for (auto it = json.begin(); it != json.end(); ++it) {
    if (it.key() != "ro.serialno"_L1) m_values.insert(it.key(), it.value().toString());
  }
}

QMap<QString, QString> Properties::all() const {
  const QMutexLocker lock(&m_mutex);
  return m_values;
}

QString Properties::value(const QString& name) const {
  const QMutexLocker lock(&m_mutex);
  return m_values.value(name);
}

bool Properties::set(const QString& name, const QString& value) {
  const QMutexLocker lock(&m_mutex);
  if (name.startsWith("ro."_L1)) return false;
  m_values.insert(name, value);
  save();
  return true;
}

void Properties::forgetVolatile() {
  const QMutexLocker lock(&m_mutex);
  m_values.removeIf([](const auto& item) { return item.key().startsWith("debug."_L1); });
  m_values.insert(u"sys.usb.config"_s, m_values.value(u"persist.sys.usb.config"_s));
  save();
}

void Properties::save() const {
  QJsonObject json;
  for (auto it = m_values.begin(); it != m_values.end(); ++it) json.insert(it.key(), it.value());
  QSaveFile file(m_file);
  if (!file.open(QIODevice::WriteOnly)) return;
  file.write(QJsonDocument(json).toJson());
  file.commit();
}

}  // namespace orvanta::headset
