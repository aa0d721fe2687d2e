#pragma once

#include <QCoroTask>
#include <QString>
#include <QUrl>

namespace orvanta {

enum class BoxIcon { None, Information, Question, Warning, Critical };
enum class BoxButtons { Ok, YesNo };
enum class BoxAnswer { Ok, Yes, No };

/// A question or message to the user.
struct MessageBox {
  QString text;
  BoxIcon icon = BoxIcon::None;
  BoxButtons buttons = BoxButtons::Ok;
  QString title = QStringLiteral("Orvanta");
};

/// The desktop's dialog for the name of a file to write.
struct SaveFileQuestion {
  QString title;
  QString suggestedPath;
  /// Name filters in the form "APK (*.apk)".
  QStringList filters;
};

/// Everything by which the program turns to the person at the desktop: boxes, dialogs, the beep, and what it
/// opens in other programs. The program answers with the real things; a test answers from a list and keeps
/// what was asked.
class Desktop {
 public:
  virtual ~Desktop() = default;

  /// Shows a modal box; closing it without an answer counts as OK or No.
  virtual QCoro::Task<BoxAnswer> showBox(MessageBox box) = 0;
  /// The chosen path in the host's own form, empty when the dialog was cancelled. It does not ask about
  /// overwriting.
  virtual QCoro::Task<QString> askSaveFile(SaveFileQuestion question) = 0;
  /// The chosen folder in the host's own form, empty when the dialog was cancelled.
  virtual QCoro::Task<QString> askFolder(QString title) = 0;
  virtual void Beep() = 0;
  /// Opens an address or a folder with the desktop's own program for it.
  virtual void open(const QUrl& address) = 0;
};

}  // namespace orvanta
