#pragma once

#include <QCoroTask>
#include <QString>
#include <QStringList>
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
  /// The answer, Yes or No, that Enter and the space bar give.
  BoxAnswer preselected = BoxAnswer::Yes;
  QString title = QStringLiteral("Orvanta");
};

/// The desktop's dialog for the name of a file to write.
struct SaveFileQuestion {
  QString title;
  QString suggestedPath;
  /// Name filters in the form "APK (*.apk)".
  QStringList filters;
};

/// One of several things, each in a line of its own.
struct ChoiceQuestion {
  QString title;
  QString text;
  QStringList choices;
};

/// How the program addresses the user: boxes, dialogs, the beep, and what it opens in other programs. The
/// program uses the real ones; a test answers from a list and records what was asked.
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
  /// The place in the list of what was chosen, the first being 0; less where the dialog was cancelled.
  virtual QCoro::Task<int> askChoice(ChoiceQuestion question) = 0;
  virtual void Beep() = 0;
  /// Tells a user who is in another program that something has ended.
  virtual void notify(const QString& title, const QString& text) = 0;
  /// Moves a file or folder to the desktop's waste bin. False if it is still where it was.
  virtual bool moveToWasteBin(const QString& path) = 0;
  /// Opens an address or a folder with the desktop's own program for it.
  virtual void open(const QUrl& address) = 0;
  /// The program is ending: open questions close unanswered, as does every later one at once.
  virtual void stopAsking() = 0;
};

}  // namespace orvanta
