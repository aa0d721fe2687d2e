// A push to the virtual headset with its progress read and shown, against the same push without. Arguments:
// megabytes, and bytes a second of the link; 40 and 20000000 unless given, so that the link and not the
// processor decides. In turns, and the shortest of each counts: what else the machine does can only make them
// longer.
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <limits>
#include <optional>

#include "adb/lines.h"
#include "core/busy_tools.h"
#include "core/dosoutputs.h"
#include "core/turn.h"
#include "install/send_progress.h"
#include "testing/virtual_headset.h"
#include "ui/busy_strip.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

constexpr double most = 1.01;
constexpr int rounds = 9;

class NoReports : public CommandReports {
 public:
  QCoro::Task<> startFailed(QString, QString, QString) override { co_return; }
  QCoro::Task<> criticalMessage(QString) override { co_return; }
};

struct Shortest {
  qint64 milliseconds = std::numeric_limits<qint64>::max();
  double processor = std::numeric_limits<double>::max();  ///< seconds of this program's
};

/// One push with the busy strip, and with the progress in it or without. False if it failed.
bool push(const QString& path, bool withProgress, Shortest& shortest, int& shownSteps) {
  NoReports reports;
  Turn turn;
  BusyStrip strip(nullptr);
  strip.resize(560, 38);
  strip.show();
  showTools(turn, &strip);
  QObject::connect(&turn, &Turn::progressed, &strip,
                   [&shownSteps](qint64 done, qint64) { shownSteps += done > 0 ? 1 : 0; });
  DOSOutputs runner(reports, &turn);
  const qint64 bytes = QFile(path).size();
  QElapsedTimer timer;
  timer.start();
  const std::clock_t before = std::clock();
  QString reply;
  {
    const auto holder = turn.begin();
    std::optional<SendProgress> progress;
    if (withProgress) progress.emplace(turn, runner, bytes).beginFile(bytes);
    reply = QCoro::waitFor(runner.ExecuteCommand(pushLine(Host::current(), path, u"/sdcard/pushed"_s)));
  }
  const auto used = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
  shortest = {std::min(shortest.milliseconds, timer.elapsed()), std::min(shortest.processor, used)};
  if (!reply.contains(u"1 file pushed"_s)) std::fprintf(stderr, "%s\n", qPrintable(reply));
  return reply.contains(u"1 file pushed"_s);
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  const QStringList words = QCoreApplication::arguments().mid(1);
  test::VirtualHeadset headset;
  if (const QString failure = headset.start(); !failure.isEmpty()) {
    std::fprintf(stderr, "%s\n", qPrintable(failure));
    return 2;
  }
  const QString path = headset.workPath(u"file"_s);
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return 2;
  for (qint64 megabyte = words.value(0, u"40"_s).toLongLong(); megabyte > 0; --megabyte)
    file.write(QByteArray(1 << 20, static_cast<char>(megabyte)));
  file.close();
  headset.setFault(u"bytes_per_second"_s, words.value(1, u"20000000"_s));

  Shortest with;
  Shortest without;
  int shownSteps = 0;
  for (int round = 0; round < rounds; ++round) {
    if (!push(path, true, with, shownSteps) || !push(path, false, without, shownSteps)) return 2;
  }
  const double ratio = static_cast<double>(with.milliseconds) / static_cast<double>(without.milliseconds);
  std::printf(
      "with progress %lld ms (this program's processor: %.0f ms), without %lld ms (%.0f ms); %d steps\n",
      static_cast<long long>(with.milliseconds), with.processor * 1000,
      static_cast<long long>(without.milliseconds), without.processor * 1000, shownSteps);
  std::printf("with progress / without = %.3f (at most %.2f)\n", ratio, most);
  return shownSteps > 0 && ratio <= most ? 0 : 1;
}
