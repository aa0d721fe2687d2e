#pragma once

#include <cstdint>

namespace orvanta::badging {

/// How much work one package may make. A small file can ask for thousands of labels in thousands of locales,
/// each by a chain of references through thousands of configurations, and name a long string again and again;
/// once the work is spent, nothing more is found in it. The largest real packages need less than a hundredth.
class Work {
 public:
  static constexpr int64_t kUnits = 200'000'000;

  explicit Work(int64_t units = kUnits) : m_left(units) {}

  /// Takes units (about ten nanoseconds each); false when there are not enough left.
  bool spend(int64_t units) {
    m_left -= units;
    return m_left >= 0;
  }
  bool isSpent() const { return m_left < 0; }

 private:
  int64_t m_left;
};

}  // namespace orvanta::badging
