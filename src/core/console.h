#pragma once

#include <QPlainTextEdit>
#include <QTimer>
#include <deque>

#include "core/console_text.h"
#include "text/text.h"

namespace orvanta {

/// The view of the console: a picture of the end of its text. It follows within one turn of the event loop,
/// or over several if much arrives at once, so that the window stays responsive. Earlier text comes into the
/// view when the user scrolls up to its beginning.
class Console : public QPlainTextEdit {
  Q_OBJECT

 public:
  Console(const QString& designName, QWidget* parent);

  /// Shows `console` from now on, with its end in view; it outlives the view.
  void follow(const ConsoleText& console);
  QString Text() const { return m_console->Text(); }
  /// The caret's position in `Text()`.
  qsizetype SelStart() const;
  /// Moves the caret and the view to the end of the text.
  void moveToEnd();

 private:
  /// A line of the view: where it begins in the text, and its running number.
  struct Line {
    qsizetype position;
    qint64 number;
  };

  const NewestText& text() const { return m_console->newest(); }
  void showPending();
  void showPiece(qsizetype stop);
  void showEarlier();
  void startViewAt(qsizetype position);
  void startViewNear(qsizetype end);
  void shortenView();
  void tellWhatIsAbove();
  void bringIntoView(const QString& words);
  /// The first line that begins shortly after `about`, before `to`; `about` itself within a very long line.
  qsizetype lineStart(qsizetype about, qsizetype to) const;
  int headLines() const { return m_head.isEmpty() ? 0 : 1; }

  const ConsoleText* m_console = nullptr;
  qsizetype m_selStart = 0;
  /// The part of the text that the view has taken over, and how long its last line is there.
  qsizetype m_viewFirst = 0;
  qsizetype m_shown = 0;
  qsizetype m_lastLineLength = 0;
  /// How many lines wait for the view, and how far the text went when it last looked.
  qsizetype m_pendingLines = 0;
  qsizetype m_seen = 0;
  /// The line above the text, about what was dropped.
  QString m_head;
  /// Some of the lines in view; from the first of them on, the view can be cut.
  std::deque<Line> m_lines;
  qint64 m_firstNumber = 0;
  bool m_changing = false;
  /// What is to come into view when all text has been taken over.
  QString m_pointedOut;
  QTimer m_turn;
};

}  // namespace orvanta
