#include "adb/network.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

bool hasLineWith(const QString& reply, const QString& beginning) {
  for (const QStringView line : QStringView(reply).tokenize(u'\n')) {
    if (line.trimmed().startsWith(beginning)) return true;
  }
  return false;
}

}  // namespace

QString networkAddressIn(const QString& reply) {
  static const QRegularExpression address(
      u"^\\s*inet ([0-9][0-9.]*)(?:/[0-9]+)? .*\\bscope global\\b.*?(\\S+)\\s*$"_s,
      QRegularExpression::MultilineOption);
  QString other;
  for (auto found = address.globalMatch(reply); found.hasNext();) {
    const auto match = found.next();
    if (match.captured(2).startsWith(u"wlan")) return match.captured(1);
    if (other.isEmpty()) other = match.captured(1);
  }
  return other;
}

bool isNetworkAddress(const QString& text) {
  static const QRegularExpression address(
      u"^(?:[A-Za-z0-9][A-Za-z0-9._-]*|\\[[0-9A-Fa-f:.]+(?:%[A-Za-z0-9]+)?\\]):[0-9]{1,5}$"_s);
  return address.match(text).hasMatch();
}

bool isNetworkSerial(const QString& serial) {
  return isNetworkAddress(serial) || serial.contains(u"._adb-tls-connect."_s) ||
         serial.contains(u"._adb._tcp"_s);
}

bool saysListening(const QString& reply) {
  return hasLineWith(reply, u"restarting in TCP mode"_s);
}

bool saysConnected(const QString& reply) {
  return hasLineWith(reply, u"connected to "_s) || hasLineWith(reply, u"already connected to "_s);
}

bool saysPaired(const QString& reply) {
  return hasLineWith(reply, u"Successfully paired to "_s);
}

bool saysUnknownCommand(const QString& reply) {
  return reply.contains(u"unknown command"_s);
}

}  // namespace orvanta
