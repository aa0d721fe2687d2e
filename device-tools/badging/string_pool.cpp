#include "string_pool.h"

#include <string.h>

#include "chunk.h"

namespace orvanta::badging {

namespace {

constexpr uint32_t kHeaderSize = 28;
constexpr uint32_t kUtf8Flag = 0x100;
constexpr uint32_t kLongest = 1 << 20;  // longer than any text for people
constexpr int64_t kCost = 8;            // of a string, besides its length
constexpr uint32_t kLongest8 = 0x7fff;

/// Takes UTF-16 units one by one and appends UTF-8. A surrogate without its partner is dropped.
class Utf16Appender {
 public:
  explicit Utf16Appender(std::string& text) : m_text(text) {}

  void add(uint32_t unit) {
    if (m_high && (unit & 0xfc00) == 0xdc00) {
      append(0x10000 + ((m_high - 0xd800) << 10) + (unit - 0xdc00));
      m_high = 0;
      return;
    }
    m_high = (unit & 0xfc00) == 0xd800 ? unit : 0;
    if ((unit & 0xf800) != 0xd800) append(unit);
  }

 private:
  void append(uint32_t point) {
    if (point < 0x80) {
      m_text.push_back(static_cast<char>(point));
      return;
    }
    const int rest = point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
    m_text.push_back(static_cast<char>(~(0xffu >> (rest + 1)) | (point >> (6 * rest))));
    for (int i = rest - 1; i >= 0; --i)
      m_text.push_back(static_cast<char>(0x80 | ((point >> (6 * i)) & 0x3f)));
  }

  std::string& m_text;
  uint32_t m_high = 0;
};

/// Lengths take one unit, or two when the first has its top bit set.
uint32_t length8(Bytes strings, uint32_t& at) {
  uint32_t length = strings.u8(at++);
  if (length & 0x80) length = ((length & 0x7f) << 8) | strings.u8(at++);
  return length;
}

uint32_t length16(Bytes strings, uint32_t& at) {
  uint32_t length = strings.u16(size_t{2} * at++);
  if (length & 0x8000) length = ((length & 0x7fff) << 16) | strings.u16(size_t{2} * at++);
  return length;
}

uint32_t sequenceLength(uint8_t first) {
  return first < 0xc0 ? 1 : first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
}

}  // namespace

bool StringPool::load(Bytes block) {
  m_loaded = false;
  const Bytes chunk = chunkAt(block, 0, kHeaderSize);
  if (chunk.size() == 0) return false;
  m_count = chunk.u32(8);
  m_utf8 = (chunk.u32(16) & kUtf8Flag) != 0;
  m_entries = chunk.sub(chunkHeaderSize(chunk));
  if (m_count > m_entries.size() / sizeof(uint32_t)) return false;
  if (m_count > 0 && !placeStrings(chunk)) return false;
  m_loaded = checkStyles(chunk);
  return m_loaded;
}

bool StringPool::placeStrings(Bytes chunk) {
  const uint32_t size = static_cast<uint32_t>(chunk.size());
  const uint32_t styleCount = chunk.u32(12);
  const uint32_t start = chunk.u32(20);
  const uint32_t stylesStart = chunk.u32(24);
  const uint32_t unit = m_utf8 ? 1 : 2;
  if (size < 2 || start >= size - 2) return false;
  if (styleCount > 0 && (stylesStart >= size - 2 || stylesStart <= start)) return false;
  const uint32_t end = styleCount > 0 ? stylesStart : size;
  m_strings = chunk.sub(start);
  m_poolLength = (end - start) / unit;
  if (m_poolLength == 0) return false;
  const size_t last = m_poolLength - 1;
  return m_utf8 ? m_strings.u8(last) == 0 : m_strings.u16(2 * last) == 0;
}

bool StringPool::checkStyles(Bytes chunk) const {
  const uint32_t styleCount = chunk.u32(12);
  if (styleCount == 0) return true;
  const uint32_t start = chunk.u32(24);
  if (start >= chunk.size()) return false;
  const size_t words = (chunk.size() - start) / sizeof(uint32_t);
  if (words < 3) return false;
  for (size_t i = words - 3; i < words; ++i) {
    if (chunk.u32(start + 4 * i) != UINT32_MAX) return false;
  }
  return true;
}

std::optional<std::string> StringPool::at(uint32_t index) const {
  if (!m_loaded || index >= m_count) return {};
  const uint32_t offset = m_entries.u32(size_t{4} * index) / (m_utf8 ? 1 : 2);
  if (offset >= m_poolLength - 1) return {};
  std::optional<std::string> text = m_utf8 ? atUtf8(offset) : atUtf16(offset);
  if (text) text->resize(strlen(text->c_str()));
  return text;
}

std::optional<std::string> StringPool::atUtf16(uint32_t offset) const {
  uint32_t at = offset;
  const uint32_t length = length16(m_strings, at);
  if (at >= m_poolLength || length >= m_poolLength - at) return {};
  if (length > kLongest || m_strings.u16(2 * (size_t{at} + length)) != 0 || !m_work.spend(kCost + length))
    return {};
  std::string text;
  Utf16Appender appender(text);
  for (size_t i = at; i < size_t{at} + length; ++i) appender.add(m_strings.u16(2 * i));
  return text;
}

std::optional<std::string> StringPool::atUtf8(uint32_t offset) const {
  uint32_t at = offset;
  const uint32_t units = length8(m_strings, at);
  const uint32_t stated = length8(m_strings, at);
  // Older packagers truncate the lengths of long strings to 15 bits: the first length with these low bits
  // that ends in a NUL is the true one.
  size_t length = stated;
  while (at + length < m_poolLength && m_strings.u8(at + length) != 0) length += kLongest8 + 1;
  if (length > kLongest || at + length >= m_poolLength || !m_work.spend(kCost + static_cast<int64_t>(length)))
    return {};

  std::string text;
  Utf16Appender appender(text);
  const Bytes source = m_strings.sub(at, length);
  size_t measured = 0;
  for (size_t i = 0; i < length;) {
    const uint32_t sequence = sequenceLength(source.u8(i));
    if (sequence > length - i) return {};
    uint32_t point = sequence == 1 ? source.u8(i) : source.u8(i) & (0xffu >> (sequence + 1));
    for (uint32_t k = 1; k < sequence; ++k) point = (point << 6) | (source.u8(i + k) & 0x3f);
    if (point > 0xffff) {
      appender.add(((point - 0x10000) >> 10) + 0xd800);
      appender.add((point & 0x3ff) | 0xdc00);
      ++measured;
    } else {
      appender.add(point);
    }
    ++measured;
    i += sequence;
  }
  if ((measured & kLongest8) != units) return {};
  return text;
}

}  // namespace orvanta::badging
