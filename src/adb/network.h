#pragma once

#include <QString>

/// Headsets on the network: what they and adb say of it.
namespace orvanta {

/// The port on which a headset listens that was told to.
inline const QString networkPort = QStringLiteral("5555");

/// The headset's own address in the reply to `ip -f inet addr show`, that of its Wi-Fi before any other;
/// empty when it is on no network:
///     31: wlan0: <BROADCAST,MULTICAST,UP,LOWER_UP> mtu 1500 qdisc mq state UP group default qlen 3000
///         inet 192.168.1.57/24 brd 192.168.1.255 scope global wlan0
QString networkAddressIn(const QString& reply);

/// Whether `text` is a host's name or address with a port, such as adb takes; a blank or an option is none.
bool isNetworkAddress(const QString& text);

/// Whether a device of this serial is connected over the network already: "192.168.1.57:5555", or a name that
/// adb has found itself, such as "adb-0123456789AB-CDdefg._adb-tls-connect._tcp".
bool isNetworkSerial(const QString& serial);

/// Whether the headset now listens: "restarting in TCP mode port: 5555".
bool saysListening(const QString& reply);

/// Whether `adb connect` has a connection: "connected to 192.168.1.57:5555", "already connected to ...".
bool saysConnected(const QString& reply);

/// Whether `adb pair` has paired: "Successfully paired to 192.168.1.57:37123 [guid=...]".
bool saysPaired(const QString& reply);

/// Whether this adb is too old for `word`: "adb: unknown command pair".
bool saysUnknownCommand(const QString& reply);

}  // namespace orvanta
