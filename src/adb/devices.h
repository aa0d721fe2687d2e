#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace orvanta {

/// Whether the reply to `adb devices`, without the notes of a server that starts, has more than its heading.
bool answersLikeADevice(const QString& devicesOutput);

/// One row of the list that `adb devices` prints.
struct ListedDevice {
  enum class State {
    Device,  ///< ready
    Offline,
    Unauthorized,   ///< the headset is asking its user to allow this computer
    Authorizing,    ///< keys are being exchanged
    Connecting,     ///< the link is being set up
    NoPermissions,  ///< the user may not open the USB device
    Recovery,
    Sideload,
    Rescue,
    Bootloader,
    Host,
    Detached,
    Unknown,  ///< any other word
  };

  QString serial;
  State state = State::Unknown;
  QString words;        ///< the state as adb wrote it, with explanation and address
  QString explanation;  ///< the text in brackets after "no permissions"
  QString address;      ///< the help page that "no permissions" names
  QString model;        ///< from `devices -l`, with blanks for its underscores; else empty
};

/// What `adb devices` said.
struct DeviceList {
  bool headed = false;  ///< the heading was there, so this is a list
  QList<ListedDevice> devices;
  QStringList complaints;  ///< every other line, such as an error; notes on the server are left out
};

/// Reads the reply to `adb devices` or `adb devices -l`. Real lines (a tab before the state; blanks with -l):
///     List of devices attached
///     1WMHH8325K1147	device
///     2G0YC1ZF7T0D3K	no permissions (missing udev rules? user is in the plugdev group); see [http://...]
///     adb-0123456789AB-CDdefg (2)._adb-tls-connect._tcp device product:eureka model:Quest_3 transport_id:3
/// A row before the heading is not a device.
DeviceList readDevices(const QString& reply);

}  // namespace orvanta
