#pragma once

#include <QCoroTask>
#include <QString>

#include "adb/app_state.h"
#include "backups/copy_kind.h"
#include "core/workbench.h"
#include "inventory/apps_form.h"
#include "operations/transfer_progress.h"

namespace orvanta {

/// What the entries of the grid's menu share: the window's row and runner, the boxes, the last reply.
///
/// The current row follows the pointer, so an entry reads the package before its first wait.
class MenuContext {
 public:
  MenuContext(Workbench& bench, Form4& window) : m_bench(bench), m_window(window) {}

  QString LastReply;  ///< the tool's reply to the last entry; lives as long as the window

  Workbench& bench() const { return m_bench; }
  Form4& window() const { return m_window; }
  Desktop& desktop() const { return m_bench.desktop; }

  /// Runs `line`; its reply is `LastReply`.
  QCoro::Task<> execute(QString line);
  /// Runs a `line` that asks for our own needs and leaves `LastReply` alone.
  QCoro::Task<QString> ask(QString line);

  /// Whether a line can be composed with `package`; if not, the user is told. The name comes from a file that
  /// anybody can have made. Where another headset than the list's has answered, the user is asked first.
  QCoro::Task<bool> isUsable(QString package);

  /// `LastReply`, or the reason if it is empty.
  QString told() const;
  QCoro::Task<BoxAnswer> showBox(MessageBox box);
  QCoro::Task<> showInformation(QString text, QString title);
  /// A box with the critical icon.
  QCoro::Task<> showError(QString text, QString title = QStringLiteral("Error"));

  /// Whether `answering` is the headset that the list is of; if not, the list says so from now on, and the
  /// user is asked whether to go on.
  QCoro::Task<bool> isHeadsetOfList(HeadsetIdentity answering);

  /// Whether a copy of `kind` may go to `place`. A copy of another kind is never displaced: the user is told
  /// about it.
  QCoro::Task<bool> mayCopyTo(QString place, CopyKind kind);

  /// The end of a transfer: a beep, and the folder in the desktop's file manager.
  void presentFolder(const QString& folder);

 private:
  Workbench& m_bench;
  Form4& m_window;
};

}  // namespace orvanta
