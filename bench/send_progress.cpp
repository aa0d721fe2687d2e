// A push to the virtual headset with its progress read and shown, against the same push without. Arguments:
// megabytes, and bytes a second of the link; 200 and 100000000 unless given, which is what a good cable
// gives.
#include <QApplication>
#include <QFile>
#include <cstdio>
#include <optional>

#include "adb/lines.h"
#include "core/busy_tools.h"
#include "core/dosoutputs.h"
#include "core/turn.h"
#include "install/send_progress.h"
#include "ratio_report.h"
#include "testing/virtual_headset.h"
#include "ui/busy_strip.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

constexpr double most = 1.01;

class NoReports : public CommandReports {
 public:
  QCoro::Task<> startFailed(QString, QString, QString) override { co_return; }
  QCoro::Task<> criticalMessage(QString) override { co_return; }
};

QString pushedFile;
int shownSteps = 0;

void push(benchmark::State& state, bool withProgress) {
  NoReports reports;
  Turn turn;
  BusyStrip strip(nullptr);
  strip.resize(560, 38);
  showTools(turn, &strip);
  QObject::connect(&turn, &Turn::progressed, &strip,
                   [](qint64 done, qint64) { shownSteps += done > 0 ? 1 : 0; });
  DOSOutputs runner(reports, &turn);
  const qint64 bytes = QFile(pushedFile).size();
  for (auto _ : state) {
    const auto holder = turn.begin();
    std::optional<SendProgress> progress;
    if (withProgress) progress.emplace(turn, runner, bytes).beginFile(bytes);
    const QString line = pushLine(Host::current(), pushedFile, u"/sdcard/pushed"_s);
    const QString reply = QCoro::waitFor(runner.ExecuteCommand(line));
    if (!reply.contains(u"1 file pushed"_s)) state.SkipWithError(qPrintable(reply));
  }
}

void withProgress(benchmark::State& state) {
  push(state, true);
}

void without(benchmark::State& state) {
  push(state, false);
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
  pushedFile = headset.workPath(u"file"_s);
  QFile file(pushedFile);
  if (!file.open(QIODevice::WriteOnly)) return 2;
  for (qint64 megabyte = words.value(0, u"200"_s).toLongLong(); megabyte > 0; --megabyte)
    file.write(QByteArray(1 << 20, static_cast<char>(megabyte)));
  file.close();
  headset.setFault(u"bytes_per_second"_s, words.value(1, u"100000000"_s));

  bench::RatioReporter reporter;
  bench::compared("with progress", withProgress);
  bench::compared("without", without);
  bench::runAll(1, argv, reporter);
  std::printf("%d steps were shown\n", shownSteps);
  return shownSteps > 0 && reporter.compare("with progress", "without", most) ? 0 : 1;
}
