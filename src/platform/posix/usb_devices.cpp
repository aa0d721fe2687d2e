#include "platform/usb_devices.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

/// The number that such a file holds in two hexadecimal digits; -1 if it has no number.
int numberIn(const QString& path) {
  QFile file(path);
  bool isNumber = false;
  const int number = file.open(QIODevice::ReadOnly) ? file.readLine(16).trimmed().toInt(&isNumber, 16) : 0;
  return isNumber ? number : -1;
}

}  // namespace

std::optional<bool> isDebuggablePluggedIn(const QString& devices) {
  constexpr int vendorSpecific = 0xff;
  constexpr int debugging = 0x42;
  constexpr int adbProtocol = 0x01;
  if (!QFileInfo(devices).isReadable()) return std::nullopt;
  // Interfaces are called "1-4:1.0", devices have no colon.
  QDirIterator interface(devices, {u"*:*"_s}, QDir::Dirs);
  while (interface.hasNext()) {
    const QString path = interface.next();
    if (numberIn(path + u"/bInterfaceClass"_s) == vendorSpecific &&
        numberIn(path + u"/bInterfaceSubClass"_s) == debugging &&
        numberIn(path + u"/bInterfaceProtocol"_s) == adbProtocol)
      return true;
  }
  return false;
}

}  // namespace orvanta
