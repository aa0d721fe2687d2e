#include "core/console.h"

#include <QElapsedTimer>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <utility>

#include "text/text.h"
#include "ui/theme.h"
#include "ui/worded.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

// The view takes text over in pieces of this size, until the user would notice the delay.
constexpr qsizetype pieceLength = 8 * 1024;
constexpr qint64 turnMilliseconds = 12;
// Text that keeps coming is painted once per frame, not once per block.
constexpr int frameMilliseconds = 10;
// An endless line would be laid out again for each piece, so the view breaks it here.
constexpr qsizetype longestLine = 4000;
// The view is cut back when it holds a quarter more than this.
constexpr int viewLines = 20'000;
constexpr qsizetype viewLength = 2 * 1024 * 1024;
// A tool can print faster than the view takes text over. Text that would scroll away at once is then left
// out, and the tool is read for a while before the view continues.
constexpr qsizetype mostPending = 1024 * 1024;
constexpr qsizetype mostPendingLines = 20'000;
constexpr qsizetype lengthAfterGap = 256 * 1024;
constexpr qsizetype linesAfterGap = 2'000;
constexpr qsizetype floodLength = 16 * 1024;
constexpr int floodMilliseconds = 50;
// What one scroll to the beginning brings into view.
constexpr qsizetype earlierLength = 512 * 1024;

/// What the view shows of a text, and where the first new line begins in it; -1 if no line begins.
struct Picture {
  QString text;
  qsizetype firstLine = -1;
};

/// The picture of the first `length` characters of `text`, which includes the next character if there is one.
/// `lineLength` is the length of the last line, before and after.
Picture pictureOf(QStringView text, qsizetype length, qsizetype& lineLength) {
  Picture picture;
  picture.text.reserve(length + 16);
  for (qsizetype i = 0; i < length; ++i) {
    const QChar c = text[i];
    if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') continue;
    const bool lineEnd = c == u'\n' || c == u'\r';
    if (lineEnd || lineLength >= longestLine) {
      picture.text += u'\n';
      lineLength = 0;
      if (picture.firstLine < 0) picture.firstLine = lineEnd ? i + 1 : i;
      if (lineEnd) continue;
    }
    // A control character has no glyph; the symbol for it has one.
    const bool control = c.unicode() < 0x20 && c != u'\t';
    picture.text += control ? QChar(0x2400 + c.unicode()) : c;
    ++lineLength;
  }
  return picture;
}

}  // namespace

Console::Console(const QString& designName, QWidget* parent) : QPlainTextEdit(parent) {
  setObjectName(designName);
  worded(this, [this] { setAccessibleName(inFace(u"控制台"_s, u"Console"_s)); });
  setReadOnly(true);
  setUndoRedoEnabled(false);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setTabChangesFocus(true);
  setFont(theme::consoleFont());
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  QPalette colors = palette();
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    colors.setColor(group, QPalette::Base, QColor(64, 0, 0));
    colors.setColor(group, QPalette::Text, QColor(255, 128, 0));
    colors.setColor(group, QPalette::PlaceholderText, QColor(217, 138, 74));
    colors.setColor(group, QPalette::Highlight, QColor(255, 128, 0));
    colors.setColor(group, QPalette::HighlightedText, QColor(64, 0, 0));
  }
  setPalette(colors);
  m_turn.setSingleShot(true);
  connect(&m_turn, &QTimer::timeout, this, &Console::showPending);
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
    if (value == 0 && !m_changing) showEarlier();
  });
}

void Console::follow(const ConsoleText& console) {
  m_console = &console;
  connect(&console, &ConsoleText::Change, this, [this](const QString& added, bool afresh) {
    if (afresh) {
      m_selStart = 0;
      m_pendingLines = 0;
      startViewAt(text().first());
    }
    m_pendingLines += added.count(u'\n');
    m_pointedOut.clear();
    moveToEnd();
  });
  connect(&console, &ConsoleText::pointedOut, this, [this](const QString& words) {
    m_pointedOut = words;
    if (!m_turn.isActive()) m_turn.start(frameMilliseconds);
  });
}

qsizetype Console::SelStart() const {
  return m_selStart < text().first() ? 0 : Text().size() - (text().end() - m_selStart);
}

void Console::moveToEnd() {
  m_selStart = text().end();
  if (!m_turn.isActive()) m_turn.start(frameMilliseconds);
}

void Console::showPending() {
  const QScopedValueRollback changing(m_changing, true);
  QElapsedTimer since;
  since.start();
  const qsizetype end = text().end();
  const qsizetype news = end - std::exchange(m_seen, end);
  if (end - m_shown > mostPending || m_pendingLines > mostPendingLines) startViewNear(end);
  // A CR at the very end waits for the next character: it may be half a line end.
  const bool endsInReturn = end > m_shown && text().part(end - 1, end) == u'\r';
  const qsizetype ready = end - (endsInReturn ? 1 : 0);
  while (m_shown < ready && since.elapsed() < turnMilliseconds) showPiece(qMin(m_shown + pieceLength, ready));
  shortenView();
  if (m_shown < ready) {
    m_turn.start(news > floodLength ? floodMilliseconds : 0);
    return;
  }
  tellWhatIsAbove();
  if (m_selStart == end) {
    moveCursor(QTextCursor::End);
    moveCursor(QTextCursor::StartOfLine);
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
  }
  if (!m_pointedOut.isEmpty()) bringIntoView(m_pointedOut);
}

void Console::bringIntoView(const QString& words) {
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  const QTextCursor found =
      document()->find(words, end, QTextDocument::FindBackward | QTextDocument::FindCaseSensitively);
  if (found.isNull()) return;
  // With the line before it; where the end is in view as well, that stays so.
  const int line = found.block().firstLineNumber();
  verticalScrollBar()->setValue(qMin(line - 1, verticalScrollBar()->value()));
}

void Console::showPiece(qsizetype stop) {
  const QString piece = text().part(m_shown, qMin(stop + 1, text().end()));
  m_pendingLines -= QStringView(piece).first(stop - m_shown).count(u'\n');
  const Picture picture = pictureOf(piece, stop - m_shown, m_lastLineLength);
  const qint64 lastLine = m_firstNumber + document()->blockCount() - 1 - headLines();
  if (picture.firstLine >= 0) m_lines.push_back({m_shown + picture.firstLine, lastLine + 1});
  QTextCursor cursor(document());
  cursor.movePosition(QTextCursor::End);
  cursor.insertText(picture.text);
  m_shown = stop;
}

void Console::showEarlier() {
  if (m_viewFirst <= text().first()) return;
  const QScopedValueRollback changing(m_changing, true);
  const qsizetype wanted = m_viewFirst - earlierLength;
  const qsizetype from = wanted <= text().first() ? text().first() : lineStart(wanted, m_viewFirst);
  qsizetype lineLength = 0;
  Picture picture = pictureOf(text().part(from, m_viewFirst), m_viewFirst - from, lineLength);
  if (lineLength > 0)
    picture.text += u'\n';  // the view begins in the middle of a long line that it has broken
  const auto lines = static_cast<int>(picture.text.count(u'\n'));
  const int top = firstVisibleBlock().blockNumber();
  QTextCursor cursor(document()->findBlockByNumber(headLines()));
  cursor.insertText(picture.text);
  m_viewFirst = from;
  m_firstNumber -= lines;
  m_lines.push_front({from, m_firstNumber});
  tellWhatIsAbove();
  // The lines that the user was looking at stay where they are.
  verticalScrollBar()->setValue(document()->findBlockByNumber(top + lines).firstLineNumber());
}

void Console::startViewAt(qsizetype position) {
  const QScopedValueRollback changing(m_changing, true);
  clear();
  m_head.clear();
  m_lines.clear();
  m_viewFirst = position;
  m_shown = position;
  m_lastLineLength = 0;
  tellWhatIsAbove();
}

void Console::startViewNear(qsizetype end) {
  const qsizetype from = lineStart(qMax(text().first(), end - lengthAfterGap), end);
  const QString last = text().part(from, end);
  qsizetype start = last.size();
  for (int lines = 0; lines < linesAfterGap && start > 0; ++lines) start = last.lastIndexOf(u'\n', start - 1);
  start = start > 0 ? start + 1 : 0;
  m_pendingLines = QStringView(last).sliced(start).count(u'\n');
  startViewAt(from + start);
}

void Console::shortenView() {
  const int lines = document()->blockCount();
  if (m_shown - m_viewFirst <= viewLength / 4 * 5 && lines <= viewLines / 4 * 5) return;
  const qint64 lastNumber = m_firstNumber + lines;
  const auto isKept = [this, lastNumber](const Line& line) {
    return m_shown - line.position <= viewLength && lastNumber - line.number <= viewLines;
  };
  while (m_lines.size() > 1 && !isKept(m_lines.front())) m_lines.pop_front();
  if (m_lines.empty()) return;
  const Line first = m_lines.front();
  QTextCursor cursor(document()->findBlockByNumber(headLines()));
  cursor.movePosition(QTextCursor::NextBlock, QTextCursor::KeepAnchor,
                      static_cast<int>(first.number - m_firstNumber));
  cursor.removeSelectedText();
  m_viewFirst = first.position;
  m_firstNumber = first.number;
  tellWhatIsAbove();
}

void Console::tellWhatIsAbove() {
  if (m_viewFirst == 0) return;
  const qsizetype dropped = qMin(m_viewFirst, text().first());
  QString head;
  if (dropped > 0) head = ConsoleText::droppedNotice(dropped);
  if (dropped < m_viewFirst) {
    if (!head.isEmpty()) head += u' ';
    head += inFace(u"（前面还有 %1 个字符，向上滚动即可显示）"_s, u"(Scroll up for %1 earlier characters)"_s,
                   u"（前面还有 %1 个字符，向上滚动即可显示）(Scroll up for %1 earlier characters)"_s)
                .arg(m_viewFirst - dropped);
  }
  if (head == m_head) return;
  QTextCursor cursor(document());
  if (m_head.isEmpty()) {
    cursor.insertText(head + u'\n');
  } else {
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    cursor.insertText(head);
  }
  m_head = head;
}

qsizetype Console::lineStart(qsizetype about, qsizetype to) const {
  const qsizetype lineEnd = text().part(about, qMin(about + longestLine, to)).indexOf(u'\n');
  return lineEnd < 0 || about + lineEnd + 1 == to ? about : about + lineEnd + 1;
}

}  // namespace orvanta
