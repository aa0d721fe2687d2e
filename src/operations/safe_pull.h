#pragma once

#include <QCoroTask>
#include <QString>

#include "operations/menu_context.h"

namespace orvanta {

/// One file or one folder that is to come from the device.
struct PullTask {
  QString line;        ///< the command
  QString remotePath;  ///< what is on the device
  QString place;       ///< where the copy stands afterwards
  bool isFolder = false;
};

struct PullOutcome {
  bool complete = false;
  bool asBefore = false;  ///< not complete, and nothing on the desktop has changed
  /// What the user has to know besides the tool's reply, a line each.
  QString notes;
};

/// Runs the pull so that its result can be relied on. An earlier copy is set aside first, and is back if the
/// pull does not succeed; what such a pull left bears a name that says so. A pull counts as complete when the
/// tool says so and the bytes on the desktop are as many as on the device. The reply is `LastReply`.
QCoro::Task<PullOutcome> pullSafely(MenuContext& menu, PullTask task);

/// The text for the user about a pull that is not complete.
QString failureText(const MenuContext& menu, const PullOutcome& outcome);

}  // namespace orvanta
