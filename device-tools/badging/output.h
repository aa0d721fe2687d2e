#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orvanta::badging {

/// Text on its way to a file descriptor, gathered into large writes.
class Output {
 public:
  /// `descriptor` may be -1: then everything stays in `text()`.
  explicit Output(int descriptor) : m_descriptor(descriptor) {}
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;
  ~Output() { flush(); }

  Output& operator<<(std::string_view text);
  Output& operator<<(int32_t number);

  /// A value from the package: backslashes, line ends and double quotes are escaped, nothing else.
  Output& escaped(std::string_view text);

  void flush();
  /// More was printed than for any real package. The rest is dropped.
  bool isFull() const { return m_left == 0; }
  const std::string& text() const { return m_text; }

 private:
  int m_descriptor;
  size_t m_left = 64 << 20;
  std::string m_text;
};

}  // namespace orvanta::badging
