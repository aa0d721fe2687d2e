#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "text/bilingual.h"
#include "ui/status.h"

/// The connection doctor: tells in one sentence why the headset cannot be used, and what to do next.
namespace orvanta {

/// What is known from the watcher's polls alone.
struct ConnectionFacts {
  enum class Tool { Runs, Missing, NotExecutable };

  Tool tool = Tool::Runs;
  bool inFront = true;                 ///< the main window is the active one; else nothing is asked
  int silentSeconds = 0;               ///< for how long polls have had no answer
  std::optional<QString> answer = {};  ///< the last reply to `adb devices` with the notes on its
                                       ///< server; nothing before the first one
  QString chosenSerial = {};           ///< the device that the user chose; may be empty
  std::optional<bool> pluggedIn = {};  ///< whether a USB device offers debugging (platform/usb_devices.h)
  QStringList toolPlaces = {};         ///< folders that have adb, where it is missing beside the program
  bool listUsedUp = false;             ///< the list of apps was closed and does not open again
};

enum class ConnectionState {
  ToolMissing,
  ToolElsewhere,  ///< missing beside the program, but on this computer
  ToolNotExecutable,
  Paused,
  ServerSilent,
  Looking,
  OtherServer,   ///< another program's version of adb and ours keep ending each other's server
  PortTaken,     ///< something that is not an adb server listens on adb's port
  ServerFailed,  ///< adb printed an error instead of a list
  NoAnswer,      ///< adb ended without output
  ChosenGone,
  NotListed,  ///< plugged in, but adb does not see it
  NoDevice,
  NoPermissions,
  Unauthorized,
  Connecting,
  Offline,
  OtherMode,  ///< recovery, bootloader and the like
  UnknownState,
  Several,
  ListUsedUp,
  Ready,
};

enum class ConnectionAction {
  None,
  ChooseToolFolder,
  RestartServer,
  ShowSteps,  ///< shows the remedy in a window
  CopyUdevCommand,
  ChooseDevice,
  StartAnew,  ///< the program
};

/// Where the user stands.
struct Connection {
  ConnectionState state = ConnectionState::Looking;
  Status::Sign sign = Status::Sign::Working;
  Bilingual sentence;  ///< fits one row
  Bilingual remedy;    ///< what to do, in full; may be empty
  ConnectionAction action = ConnectionAction::None;
  Bilingual actionCaption;             ///< empty without an action
  std::optional<QString> serial = {};  ///< the headset that adb works on, empty without one; nothing
                                       ///< if this is no news of it
  qsizetype unchosen = 0;              ///< devices among which adb cannot decide
};

/// The nearest cause only.
Connection diagnose(const ConnectionFacts& facts);

/// Whether a tool that could not be started is missing or cannot be run; `error` is the system's number as
/// `ChildProcess` reports it.
ConnectionFacts::Tool toolAfterStartFailure(quint32 error);

/// The command for a terminal that lets the user at the desk open any USB device that offers debugging.
QString udevCommand();

}  // namespace orvanta
