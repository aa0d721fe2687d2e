#include "core/console.h"

#include <QElapsedTimer>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>

#include "ui/theme.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

// The view takes text over in pieces of this size until a turn has lasted long enough to be felt.
constexpr qsizetype pieceLength = 8 * 1024;
constexpr qint64 turnMilliseconds = 12;
// Text that keeps coming is painted once a frame, not once a block.
constexpr int frameMilliseconds = 10;
// A line that never ends would be laid out anew for each piece; the view breaks it here.
constexpr qsizetype longestLine = 4000;
// What scrolled out of this is still in the text, not in the view.
constexpr int viewLines = 400'000;

}  // namespace

Console::Console(const QString& designName, QWidget* parent) : QPlainTextEdit(parent) {
  setObjectName(designName);
  setAccessibleName(u"控制台 Console"_s);
  setReadOnly(true);
  setUndoRedoEnabled(false);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setTabChangesFocus(true);
  setMaximumBlockCount(viewLines);
  setFont(theme::consoleFont());
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  QPalette colors = palette();
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    colors.setColor(group, QPalette::Base, QColor(64, 0, 0));
    colors.setColor(group, QPalette::Text, QColor(255, 128, 0));
    colors.setColor(group, QPalette::Highlight, QColor(255, 128, 0));
    colors.setColor(group, QPalette::HighlightedText, QColor(64, 0, 0));
  }
  setPalette(colors);
  m_turn.setSingleShot(true);
  connect(&m_turn, &QTimer::timeout, this, &Console::showPending);
}

void Console::setText(const QString& text) {
  m_text = text;
  m_shown = 0;
  m_lastLineLength = 0;
  clear();
  scheduleView();
}

void Console::append(const QString& text) {
  if (text.isEmpty()) return;
  m_text += text;
  scheduleView();
}

void Console::appendLine(const QString& message) {
  append(u"\r\n"_s + message + u"\r\n"_s);
}

void Console::scheduleView() {
  if (!m_turn.isActive()) m_turn.start(frameMilliseconds);
  Q_EMIT Change();
}

void Console::moveToEnd() {
  m_selStart = m_text.size();
  if (!m_turn.isActive()) m_turn.start(frameMilliseconds);
}

void Console::showPending() {
  QElapsedTimer since;
  since.start();
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  // A CR at the very end waits for what comes behind it: it is half a line end, or one of its own.
  const qsizetype ready = m_text.size() - (m_text.endsWith(u'\r') ? 1 : 0);
  while (m_shown < ready && since.elapsed() < turnMilliseconds) {
    QString piece;
    const qsizetype stop = qMin(m_shown + pieceLength, ready);
    piece.reserve(stop - m_shown + 16);
    for (; m_shown < stop; ++m_shown) {
      const QChar c = m_text[m_shown];
      if (c == u'\r' && m_text[m_shown + 1] == u'\n') continue;
      const bool lineEnd = c == u'\n' || c == u'\r';
      if (lineEnd || m_lastLineLength >= longestLine) {
        piece += u'\n';
        m_lastLineLength = 0;
        if (lineEnd) continue;
      }
      // A control character has no glyph; its picture from the block of control pictures has one.
      const bool control = c.unicode() < 0x20 && c != u'\t';
      piece += control ? QChar(0x2400 + c.unicode()) : c;
      ++m_lastLineLength;
    }
    end.insertText(piece);
  }
  if (m_shown < ready) {
    m_turn.start(0);
    return;
  }
  if (m_selStart == m_text.size()) {
    moveCursor(QTextCursor::End);
    moveCursor(QTextCursor::StartOfLine);
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
  }
}

}  // namespace orvanta
