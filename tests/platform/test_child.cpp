// The subject of the runner's tests: test-child STEP... takes one step after the other, and ends.
//
//   HEX, N*HEX  writes these bytes, N times; with "2:" in front of all that to the standard error
//   ~N          waits N milliseconds
//   number      writes the number of this process, and a line end
//   words       writes each of the further arguments, and a line end behind each
//   flood       writes until somebody ends it
//   close       closes its outputs
//   hang        does not end when asked to; later by itself, so that a failed test leaves nothing for ever
//   child       starts this program once more, with the same outputs, for the further steps, and ends
//   stranger    the same, but for a process that does not belong to this one, where the system has such
//
// What is written together reaches the pipe in one piece. On Windows a line end gets its return on the way,
// which the runner's reader cannot see.
#include <unistd.h>

#include <QCoreApplication>
#include <QProcess>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

void say(const QByteArray& bytes, std::FILE* output = stdout) {
  const auto size = static_cast<size_t>(bytes.size());
  if (std::fwrite(bytes.constData(), 1, size, output) < size || std::fflush(output) != 0) std::_Exit(1);
}

void sayPiece(QByteArray piece) {
  const bool toError = piece.startsWith("2:");
  if (toError) piece.remove(0, 2);
  const qsizetype star = piece.indexOf('*');
  const QByteArray bytes = QByteArray::fromHex(piece.mid(star + 1));
  say(star < 0 ? bytes : bytes.repeated(piece.first(star).toInt()), toError ? stderr : stdout);
}

[[noreturn]] void leaveToAnother(const QStringList& steps, bool stranger) {
  const QString program = QCoreApplication::applicationFilePath();
  QProcess child;
  child.setProcessChannelMode(QProcess::ForwardedChannels);
  if (stranger) {
    QProcess::startDetached(program, steps);
  } else {
    child.start(program, steps);
    child.waitForStarted();
  }
  std::_Exit(0);  // an ordinary end would end the child too
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  QStringList steps = QCoreApplication::arguments().mid(1);
  while (!steps.isEmpty()) {
    const QByteArray step = steps.takeFirst().toUtf8();
    if (step == "child" || step == "stranger") {
      leaveToAnother(steps, step == "stranger");
    } else if (step == "words") {
      while (!steps.isEmpty()) say(steps.takeFirst().toUtf8() + '\n');
    } else if (step == "number") {
      say(QByteArray::number(::getpid()) + '\n');
    } else if (step == "flood") {
      for (;;) say(QByteArray(4096, '\n'));
    } else if (step == "close") {
      std::fclose(stdout);
      std::fclose(stderr);
    } else if (step == "hang") {
      std::signal(SIGTERM, SIG_IGN);
      std::this_thread::sleep_for(std::chrono::minutes(1));
    } else if (step.startsWith('~')) {
      std::this_thread::sleep_for(std::chrono::milliseconds(step.mid(1).toInt()));
    } else {
      sayPiece(step);
    }
  }
  return 0;
}
