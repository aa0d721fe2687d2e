#include <malloc.h>
#include <time.h>

#include "inventory/parser.h"
#include "inventory/progress.h"
#include "ratio_report.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

QString streamOf(int apps) {
  QString stream;
  for (int i = 0; i < apps; ++i) {
    stream +=
        u"IP3x: com.example.app%1 \r\napplication-label:App %1\r\nVC3x: versionCode: %1 minSdk: 23\r\n"
        "VC3x: versionName: 1.%1\r\nTO3x: 12.3\r\nAP3x: 12.0\r\nOB3x: 0.2\r\nAD3x: 0.1\r\n"_s.arg(i);
  }
  return stream;
}

constexpr double longestSeconds = 1;
double slowestSeconds = 0;

/// Processor time of this thread, without other work on the machine.
double threadSeconds() {
  timespec time = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// What the window does for each block of 256 bytes, and the reading at the end.
void read(benchmark::State& state, int apps) {
  const QString stream = streamOf(apps);
  for ([[maybe_unused]] auto _ : state) {
    const double begin = threadSeconds();
    AppTagCounter counter;
    QString output;
    for (qsizetype at = 0; at < stream.size(); at += 256) {
      const QString block = stream.mid(at, 256);
      output += block;
      counter.feed(block);
      const QString count = QString::number(apps);
      benchmark::DoNotOptimize(progressCaption(counter.apps(), count));
      benchmark::DoNotOptimize(progressBarTwips(progressPercent(counter.apps(), count)));
    }
    benchmark::DoNotOptimize(readInventory(output));
    const double seconds = threadSeconds() - begin;
    state.SetIterationTime(seconds);
    slowestSeconds = std::max(slowestSeconds, seconds);
  }
}

void read1000(benchmark::State& state) {
  read(state, 1000);
}
void read10000(benchmark::State& state) {
  read(state, 10000);
}

void timed(const char* name, void (*function)(benchmark::State&)) {
  benchmark::RegisterBenchmark(name, function)
      ->Unit(benchmark::kMillisecond)
      ->UseManualTime()
      ->Iterations(1)
      ->Repetitions(15)
      ->ReportAggregatesOnly(true);
}

}  // namespace

int main(int argc, char** argv) {
  // Keep freed memory: otherwise only the large run would pay for fresh pages, each time, and that would be
  // measured.
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  timed("read 1000 apps", read1000);
  timed("read 10000 apps", read10000);
  orvanta::bench::RatioReporter reporter;
  orvanta::bench::runAll(argc, argv, reporter);
  const bool linear = reporter.compare("read 10000 apps", "read 1000 apps", 12);
  std::printf("slowest reading: %.3f s (at most %.0f)\n", slowestSeconds, longestSeconds);
  return linear && slowestSeconds < longestSeconds ? 0 : 1;
}
