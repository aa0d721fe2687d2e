#include "device/presses.h"

#include "adb/lines.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

QString propertyLine(const Host& host, const char16_t* property) {
  return setPropertyLine(host, QString::fromUtf16(property));
}

}  // namespace

QStringList pressLines(const Host& host, PanelPress press) {
  if (press.first == nullptr) return {rebootLine(host)};
  QStringList lines{propertyLine(host, press.first)};
  if (press.second != nullptr) lines += propertyLine(host, press.second);
  return lines;
}

}  // namespace orvanta
