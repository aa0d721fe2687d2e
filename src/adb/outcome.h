#pragma once

#include <QString>

#include "text/bilingual.h"

namespace orvanta {

/// What adb's reply to a request says as a whole.
struct Outcome {
  enum class Kind {
    Success,     ///< in adb's or the headset's own word
    Refused,     ///< not done; the reply says why
    NotReached,  ///< the headset was not there or could not be used, or the link was lost
    Unclear,     ///< text that says neither
    Empty,       ///< no text at all
  };

  Kind kind = Kind::Empty;
  QString code;        ///< the headset's reason for a refusal as it printed it; else empty
  QString words;       ///< the telling line of the reply, without its path and code
  Bilingual sentence;  ///< what is wrong and what to do; for a success only if there were warnings
};

/// Reads the reply to `adb install` or `install-multiple`:
///     Performing Streamed Install
///     adb: failed to install x.apk: Failure [INSTALL_FAILED_VERSION_DOWNGRADE: Downgrade detected: ...]
Outcome installOutcome(const QString& reply);

/// Reads the reply to `adb uninstall` or `pm uninstall`:
///     Failure [DELETE_FAILED_INTERNAL_ERROR]
Outcome uninstallOutcome(const QString& reply);

/// Reads the reply to `adb push`:
///     adb: error: failed to copy 'a' to '/sdcard/a': remote write failed: No space left on device
Outcome pushOutcome(const QString& reply);

}  // namespace orvanta
