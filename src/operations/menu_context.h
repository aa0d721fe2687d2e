#pragma once

#include <QCoroTask>
#include <QString>

#include "core/main_window.h"
#include "inventory/apps_form.h"
#include "operations/transfer_progress.h"

namespace orvanta {

/// What the entries of the grid's menu have in common: the window's row and runner, the boxes, the last
/// reply.
///
/// The row follows the pointer, and so do the texts of it: an entry takes the package before it first waits.
class MenuContext {
 public:
  MenuContext(apkinfo& form, Form4& window) : m_form(form), m_window(window) {}

  QString LastReply;  ///< what the tool said to the last entry, for the life of the window

  apkinfo& form() const { return m_form; }
  Form4& window() const { return m_window; }
  Desktop& desktop() const { return m_form.desktop(); }
  BusyStrips strips() const { return {m_window.busyStrip, m_form.busyStrip}; }

  /// Runs `line`; its reply is `LastReply`.
  QCoro::Task<> execute(QString line);
  /// Runs a `line` of our own asking, which leaves `LastReply` alone.
  QCoro::Task<QString> ask(QString line);

  /// Whether a line can be composed with `package`; if not, the user is told. The name comes from a file that
  /// anybody can have made.
  QCoro::Task<bool> isUsable(QString package);

  /// `LastReply`, or why it says nothing.
  QString told() const;
  QCoro::Task<BoxAnswer> showBox(MessageBox box);
  QCoro::Task<> showInformation(QString text, QString title);
  /// A box with the critical icon.
  QCoro::Task<> showError(QString text, QString title = QStringLiteral("Error"));

  /// The end of a transfer: a beep, and the folder in the desktop's file manager.
  void presentFolder(const QString& folder);

 private:
  apkinfo& m_form;
  Form4& m_window;
};

}  // namespace orvanta
