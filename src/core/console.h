#pragma once

#include <QPlainTextEdit>
#include <QTimer>

namespace orvanta {

/// The console: what the tools and the workflows say, from the first line on.
///
/// The text is held here as it was written, with its line ends; the view is only a picture of it that follows
/// within the same turn of the event loop, or over several where much comes at once, so that the window goes
/// on answering.
class Console : public QPlainTextEdit {
  Q_OBJECT

 public:
  Console(const QString& designName, QWidget* parent);

  QString Text() const { return m_text; }
  /// Replaces the whole text.
  void setText(const QString& text);
  /// Sets the text to the old text followed by `text`, with nothing between them.
  void append(const QString& text);
  /// Appends a line of the program's own: CR LF, `message`, CR LF.
  void appendLine(const QString& message);
  /// Where the caret stands in the text.
  qsizetype SelStart() const { return m_selStart; }
  /// Moves the caret and the view to the end of the text.
  void moveToEnd();

 Q_SIGNALS:
  /// The text was changed, from whatever source.
  void Change();

 private:
  void scheduleView();
  void showPending();

  QString m_text;
  qsizetype m_selStart = 0;
  /// How much of the text the view has taken over, and how long its last line is there.
  qsizetype m_shown = 0;
  qsizetype m_lastLineLength = 0;
  QTimer m_turn;
};

}  // namespace orvanta
