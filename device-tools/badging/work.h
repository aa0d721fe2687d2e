#pragma once

#include <cstdint>

namespace orvanta::badging {

/// The work budget for one package. A small file can have thousands of labels in thousands of locales, each
/// behind a chain of references through thousands of configurations, and name a long string again and again;
/// once the budget is spent, lookups find nothing more. Real packages need less than a hundredth of it.
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
