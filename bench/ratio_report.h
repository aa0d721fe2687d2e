#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>

namespace orvanta::bench {

/// Runs the registered benchmarks alternately and keeps the median of each. Times differ between machines and
/// runs; the ratio of two in one run hardly does.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.aggregate_name == "median") m_medians[run.run_name.function_name] = run.GetAdjustedRealTime();
    }
  }

  /// Prints how many times as long `subject` took as `reference`. Returns whether that is within `limit`.
  bool compare(const std::string& subject, const std::string& reference, double limit) const {
    const auto a = m_medians.find(subject);
    const auto b = m_medians.find(reference);
    if (a == m_medians.end() || b == m_medians.end()) return false;
    const double ratio = a->second / b->second;
    std::printf("%s / %s = %.2f (at most %.2f)%s\n", subject.c_str(), reference.c_str(), ratio, limit,
                ratio <= limit ? "" : "  TOO SLOW");
    return ratio <= limit;
  }

 private:
  std::map<std::string, double> m_medians;
};

/// Registers `function` with what all comparisons share.
inline void compared(const char* name, void (*function)(benchmark::State&), int repetitions = 7) {
  benchmark::RegisterBenchmark(name, function)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime()
      ->Iterations(1)
      ->Repetitions(repetitions)
      ->ReportAggregatesOnly(true);
}

inline void runAll(int argc, char** argv, RatioReporter& reporter) {
  // Interleaved, so that a busy minute of the machine hits both.
  std::string mixed = "--benchmark_enable_random_interleaving=true";
  std::vector<char*> words(argv, argv + argc);
  words.push_back(mixed.data());
  int count = static_cast<int>(words.size());
  benchmark::Initialize(&count, words.data());
  benchmark::RunSpecifiedBenchmarks(&reporter);
}

}  // namespace orvanta::bench
