#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "bytes.h"
#include "work.h"

namespace orvanta::badging {

/// A chunk of strings, in UTF-8 or UTF-16, as in manifests and resource tables. Styles are skipped.
class StringPool {
 public:
  explicit StringPool(Work& work) : m_work(work) {}

  /// Checks the chunk that `block` begins with; false when the device would refuse it.
  bool load(Bytes block);

  bool isLoaded() const { return m_loaded; }

  /// The string in UTF-8, up to its first NUL; nothing when the index or the string's place or form is wrong.
  std::optional<std::string> at(uint32_t index) const;

 private:
  bool placeStrings(Bytes chunk);
  bool checkStyles(Bytes chunk) const;
  std::optional<std::string> atUtf8(uint32_t offset) const;
  std::optional<std::string> atUtf16(uint32_t offset) const;

  Work& m_work;
  bool m_loaded = false;
  bool m_utf8 = false;
  uint32_t m_count = 0;
  uint32_t m_poolLength = 0;  // in units of the encoding
  Bytes m_entries;
  Bytes m_strings;
};

}  // namespace orvanta::badging
