// 64 MiB of a child's output through the runner, against the same output read in 64 KiB pieces and decoded
// once. The child is this program itself, called with one word.
#include <unistd.h>

#include <QCoreApplication>
#include <cstring>

#include "core/dosoutputs.h"
#include "ratio_report.h"

using namespace Qt::StringLiterals;

namespace {

constexpr size_t megabytes = 64;

int writeOutput() {
  std::string lines;
  while (lines.size() < 65536)
    lines += "10-27 21:15:09.123  1234  5678 I ActivityManager: a line as a log has it\n";
  for (size_t written = 0; written < megabytes * 1024 * 1024;) {
    const ssize_t count = ::write(STDOUT_FILENO, lines.data(), lines.size());
    if (count < 0) return 1;
    written += static_cast<size_t>(count);
  }
  return 0;
}

class NoReports : public orvanta::CommandReports {
 public:
  QCoro::Task<> startFailed(QString, QString, QString) override { co_return; }
  QCoro::Task<> criticalMessage(QString) override { co_return; }
};

void throughRunner(benchmark::State& state) {
  NoReports reports;
  for (auto _ : state) {
    orvanta::DOSOutputs runner(reports);
    const QString line = u"\"%1\" write"_s.arg(QCoreApplication::applicationFilePath());
    benchmark::DoNotOptimize(QCoro::waitFor(runner.ExecuteCommand(line)).size());
  }
}

void readAndDecodedOnce(benchmark::State& state) {
  for (auto _ : state) {
    const QByteArray line = '"' + QCoreApplication::applicationFilePath().toUtf8() + "\" write";
    FILE* pipe = ::popen(line.constData(), "r");
    QByteArray all;
    char piece[65536];
    for (ssize_t count; (count = ::read(fileno(pipe), piece, sizeof piece)) > 0;) all.append(piece, count);
    ::pclose(pipe);
    benchmark::DoNotOptimize(QString::fromUtf8(all).size());
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1 && std::strcmp(argv[1], "write") == 0) return writeOutput();
  QCoreApplication application(argc, argv);
  orvanta::bench::RatioReporter reporter;
  orvanta::bench::compared("runner", throughRunner);
  orvanta::bench::compared("read once", readAndDecodedOnce);
  orvanta::bench::runAll(argc, argv, reporter);
  return reporter.compare("runner", "read once", 3) ? 0 : 1;
}
