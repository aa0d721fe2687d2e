// 20 MiB of log-like text in 256-byte blocks into the console, against setting the same text at once; and the
// longest stretch in which the window did not answer meanwhile.
#include <QApplication>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <algorithm>
#include <ctime>

#include "core/console.h"
#include "ratio_report.h"
#include "ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

double longestStallMilliseconds = 0;

/// Processor time of this thread, so that other programs on a busy machine do not count as a stall.
double threadMilliseconds() {
  timespec now{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

const QString& logText() {
  static const QString text = [] {
    QString made;
    for (int i = 0; made.size() < 20 * 1024 * 1024; ++i) {
      made += u"10-27 21:15:09.%1  1234  5678 I ActivityManager: a line as a log has it\r\n"_s.arg(i);
    }
    return made;
  }();
  return text;
}

void inBlocks(benchmark::State& state) {
  const QString& text = logText();
  for (auto _ : state) {
    orvanta::ConsoleText written;
    orvanta::Console console(u"txtOutputs"_s, nullptr);
    console.follow(written);
    console.resize(560, 170);
    console.show();
    const QString lastLine = text.trimmed().section(u'\n', -1);
    qsizetype sent = 0;
    // As from a tool: some blocks come in each turn of the event loop.
    while (sent < text.size() || console.document()->lastBlock().previous().text() != lastLine) {
      const double begun = threadMilliseconds();
      for (int i = 0; i < 64 && sent < text.size(); ++i, sent += 256) written.append(text.mid(sent, 256));
      QApplication::processEvents();
      longestStallMilliseconds = std::max(longestStallMilliseconds, threadMilliseconds() - begun);
    }
  }
}

void atOnce(benchmark::State& state) {
  QString text = logText();
  text.replace(u"\r\n"_s, u"\n"_s);
  for (auto _ : state) {
    QPlainTextEdit edit;
    edit.setReadOnly(true);
    edit.setUndoRedoEnabled(false);
    edit.setFont(orvanta::theme::consoleFont());
    edit.resize(560, 170);
    edit.show();
    edit.setPlainText(text);
    edit.moveCursor(QTextCursor::End);
    QApplication::processEvents();
  }
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  orvanta::bench::RatioReporter reporter;
  orvanta::bench::compared("in blocks", inBlocks, 5);
  orvanta::bench::compared("at once", atOnce, 5);
  orvanta::bench::runAll(argc, argv, reporter);
  const bool fast = reporter.compare("in blocks", "at once", 3);
  std::printf("longest stretch without an answer: %.1f ms (at most 50)\n", longestStallMilliseconds);
  return fast && longestStallMilliseconds <= 50 ? 0 : 1;
}
