#pragma once

#include <QCoroTask>
#include <QString>

#include "operations/local_copy.h"
#include "operations/menu_context.h"

namespace orvanta {

/// Between the pieces of a line above the list.
inline const QString newsSeparator = QStringLiteral("  ·  ");

/// One file or one folder that is to come from the device.
struct PullTask {
  QString line;        ///< the command
  QString remotePath;  ///< the source on the device
  QString place;       ///< where the copy goes
  bool isFolder = false;
};

struct PullOutcome {
  bool begun = false;
  bool complete = false;
  bool asBefore = false;  ///< not complete, with nothing changed on the desktop
  /// What the user needs to know besides the tool's reply, line by line.
  QString notes;
  LocalSizes copied;  ///< how much has come, if complete
  LocalCopy::Kept kept;

  enum class Names { Short, WithPath };
  /// What became of the earlier copies, in one line; empty if none is left.
  QString keptText(Names names) const;
};

/// Runs the pull so that its result can be relied on. An earlier copy is set aside first and brought back if
/// the pull fails; what a failed pull left is named `.partial`. A pull is complete if the tool says so and
/// the files on the desktop have as many bytes as on the device. Of the folders that pulls have replaced, the
/// last one stays. The reply is `LastReply`.
QCoro::Task<PullOutcome> pullSafely(MenuContext& menu, PullTask task);

/// Sets right what copies of runs that have died left, and says so in the console: it must not count as a
/// backup.
void settleCopies(Workbench& bench);

/// "2 files, 5 bytes"; for a single file only the bytes.
QString figures(qint64 files, qint64 bytes, bool isFolder);

/// The text for the user about an incomplete or imperfect pull: first what happened and what is kept, then
/// what the tool said.
QString failureText(const MenuContext& menu, const PullOutcome& outcome);

}  // namespace orvanta
