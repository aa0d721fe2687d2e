#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace orvanta::badging {

/// A range of a package's memory. Reads are checked: outside the range they give zero, so that a file that
/// lies about its sizes can make a value wrong but never touch other memory.
class Bytes {
 public:
  Bytes() = default;
  Bytes(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}

  const uint8_t* data() const { return m_data; }
  size_t size() const { return m_size; }

  uint8_t u8(size_t at) const { return read<uint8_t>(at); }
  uint16_t u16(size_t at) const { return read<uint16_t>(at); }
  uint32_t u32(size_t at) const { return read<uint32_t>(at); }

  /// The stretch from `at` on, at most `length` bytes of it; empty when `at` lies outside.
  Bytes sub(size_t at, size_t length = SIZE_MAX) const {
    if (at > m_size) return {};
    const size_t left = m_size - at;
    return {m_data + at, length < left ? length : left};
  }

 private:
  static_assert(std::endian::native == std::endian::little, "packages are little-endian, and so are we");

  template <typename T>
  T read(size_t at) const {
    T value = 0;
    if (at <= m_size && sizeof(T) <= m_size - at) memcpy(&value, m_data + at, sizeof(T));
    return value;
  }

  const uint8_t* m_data = nullptr;
  size_t m_size = 0;
};

}  // namespace orvanta::badging
