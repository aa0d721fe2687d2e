#include "zip_archive.h"

#define ZLIB_CONST
#include <zlib.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace orvanta::badging {

namespace {

constexpr uint32_t kLocalSignature = 0x04034b50;
constexpr uint32_t kDirectorySignature = 0x02014b50;
constexpr uint32_t kEndSignature = 0x06054b50;
constexpr size_t kLocalSize = 30;
constexpr size_t kDirectoryEntrySize = 46;
constexpr size_t kEndSize = 22;
constexpr uint16_t kHasDescriptor = 0x0008;
constexpr uint16_t kStored = 0;
// Keeps a zip bomb from filling the memory. The largest real tables are less than half of this.
constexpr uint32_t kLargestTable = 32u << 20;
constexpr uint32_t kLargestManifest = 4u << 20;
constexpr size_t kLongestName = 512;  // of an entry that is read
constexpr std::string_view kManifest = "AndroidManifest.xml";
constexpr std::string_view kTable = "resources.arsc";

/// A buffered window on a source, for a walk from front to back.
class Window {
 public:
  explicit Window(const ByteSource& source)
      : m_source(source),
        m_capacity(static_cast<size_t>(std::min<uint64_t>(kSize, source.size()))),
        m_buffer(new uint8_t[m_capacity]) {}

  /// The stretch at `offset`; empty when it is not there or longer than the window.
  Bytes at(uint64_t offset, size_t length) {
    if (offset < m_start || offset + length > m_start + m_filled) {
      if (offset > m_source.size()) return {};
      m_start = offset;
      m_filled = static_cast<size_t>(std::min<uint64_t>(m_capacity, m_source.size() - offset));
      if (!m_source.read(offset, m_buffer.get(), m_filled)) m_filled = 0;
    }
    const size_t from = static_cast<size_t>(offset - m_start);
    if (length > m_filled || from > m_filled - length) return {};
    return {m_buffer.get() + from, length};
  }

 private:
  static constexpr size_t kSize = 128 * 1024;  // holds the longest name, and the longest end record
  const ByteSource& m_source;
  size_t m_capacity;
  std::unique_ptr<uint8_t[]> m_buffer;
  uint64_t m_start = 0;
  size_t m_filled = 0;
};

/// Names must look like UTF-8 (sequences of up to six bytes are let through, as on the device).
bool isValidName(Bytes name) {
  for (size_t i = 0; i < name.size(); ++i) {
    const uint8_t byte = name.u8(i);
    if (byte == 0) return false;
    if ((byte & 0x80) == 0) continue;
    if ((byte & 0xc0) == 0x80 || (byte & 0xfe) == 0xfe) return false;
    for (uint8_t rest = static_cast<uint8_t>(byte << 1); rest & 0x80;
         rest = static_cast<uint8_t>(rest << 1)) {
      if (++i == name.size() || (name.u8(i) & 0xc0) != 0x80) return false;
    }
  }
  return true;
}

uint64_t hashOf(std::string_view name) {
  uint64_t hash = 0xcbf29ce484222325;
  for (const char letter : name) hash = (hash ^ static_cast<uint8_t>(letter)) * 0x100000001b3;
  return hash;
}

std::string_view text(Bytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

bool ZipArchive::open() {
  return findDirectory() && walkDirectory();
}

bool ZipArchive::findDirectory() {
  const uint64_t size = m_source.size();
  if (size < kEndSize || size > UINT32_MAX) return false;
  // Most archives have no comment: the record is the last thing in the file.
  for (const uint64_t reach : {uint64_t{kEndSize}, uint64_t{kEndSize + UINT16_MAX}}) {
    const size_t length = static_cast<size_t>(std::min(reach, size));
    std::vector<uint8_t> tail(length);
    if (!m_source.read(size - length, tail.data(), length)) return false;
    const Bytes bytes(tail.data(), length);
    for (size_t at = length - kEndSize + 1; at-- > 0;) {
      if (bytes.u32(at) != kEndSignature) continue;
      const Bytes end = bytes.sub(at);
      const uint64_t endOffset = size - length + at;
      m_entryCount = end.u16(10);
      m_directorySize = end.u32(12);
      m_directoryOffset = end.u32(16);
      return endOffset + kEndSize + end.u16(20) == size && m_directoryOffset + m_directorySize <= endOffset &&
             m_entryCount > 0;
    }
  }
  return false;
}

/// Calls `visit(name, entry)` for each entry; false at one that the device would refuse.
template <typename Visit>
bool ZipArchive::forEachEntry(Visit visit) const {
  Window window(m_source);
  const uint64_t end = m_directoryOffset + m_directorySize;
  uint64_t at = m_directoryOffset;
  for (uint16_t i = 0; i < m_entryCount; ++i) {
    if (at + kDirectoryEntrySize > end) return false;
    const Bytes fixed = window.at(at, kDirectoryEntrySize);
    if (fixed.u32(0) != kDirectorySignature) return false;
    const size_t nameLength = fixed.u16(28);
    const uint64_t next = at + kDirectoryEntrySize + nameLength + fixed.u16(30) + fixed.u16(32);
    Entry entry = {true, fixed.u16(10), fixed.u32(16), fixed.u32(20), fixed.u32(24), fixed.u32(42)};
    if (entry.headerOffset >= m_directoryOffset || next > end) return false;

    const Bytes name = window.at(at + kDirectoryEntrySize, nameLength);
    if (name.size() != nameLength || !isValidName(name)) return false;
    visit(text(name), entry);
    at = next;
  }
  return true;
}

bool ZipArchive::walkDirectory() {
  std::vector<uint64_t> names;
  names.reserve(std::min<uint64_t>(m_entryCount, m_directorySize / kDirectoryEntrySize));
  const bool sound = forEachEntry([&](std::string_view name, const Entry& entry) {
    names.push_back(hashOf(name));
    if (name == kManifest) m_manifest = entry;
    if (name == kTable) m_table = entry;
  });
  if (!sound) return false;
  // Two entries of one name can show one program to a checker and another to the device.
  std::sort(names.begin(), names.end());
  if (std::adjacent_find(names.begin(), names.end()) != names.end()) return false;
  return Window(m_source).at(0, 4).u32(0) == kLocalSignature;
}

ZipArchive::Result ZipArchive::manifest(Blob& content) const {
  return load(m_manifest, kManifest, kLargestManifest, content);
}

ZipArchive::Result ZipArchive::resourceTable(Blob& content) const {
  return load(m_table, kTable, kLargestTable, content);
}

ZipArchive::Result ZipArchive::file(std::string_view name, uint32_t largest, Blob& content) const {
  Entry found;
  forEachEntry([&](std::string_view entryName, const Entry& entry) {
    if (entryName == name) found = entry;
  });
  return load(found, name, largest, content);
}

/// Where an entry's data begin; 0 when its local header contradicts the directory.
uint64_t ZipArchive::dataOffset(const Entry& entry, std::string_view name) const {
  uint8_t buffer[kLocalSize + kLongestName];
  const size_t length = kLocalSize + name.size();
  if (length > sizeof(buffer) || entry.headerOffset + length > m_directoryOffset) return 0;
  if (!m_source.read(entry.headerOffset, buffer, length)) return 0;
  const Bytes header(buffer, length);
  if (header.u32(0) != kLocalSignature) return 0;
  if ((header.u16(6) & kHasDescriptor) == 0 &&
      (header.u32(14) != entry.crc || header.u32(18) != entry.packedSize || header.u32(22) != entry.size)) {
    return 0;
  }
  if (header.u16(26) != name.size() || text(header.sub(kLocalSize)) != name) return 0;
  const uint64_t offset = entry.headerOffset + length + header.u16(28);
  const uint64_t left = offset > m_directoryOffset ? 0 : m_directoryOffset - offset;
  if (offset > m_directoryOffset || entry.packedSize > left) return 0;
  if (entry.method == kStored && entry.size > left) return 0;
  return offset;
}

ZipArchive::Result ZipArchive::load(const Entry& entry, std::string_view name, uint32_t largest,
                                    Blob& content) const {
  const uint64_t offset = entry.found ? dataOffset(entry, name) : 0;
  if (offset == 0) return Result::Missing;
  if (entry.size == 0 || entry.size > largest) return Result::Unreadable;
  if (entry.method == kStored) {
    content = m_source.map(offset, entry.size);
    return content.bytes().size() == entry.size ? Result::Ready : Result::Missing;
  }
  content = Blob(entry.size);
  return inflateTo(offset, entry.packedSize, content) ? Result::Ready : Result::Unreadable;
}

bool ZipArchive::inflateTo(uint64_t offset, uint32_t packedSize, Blob& content) const {
  z_stream stream = {};
  if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) return false;
  uint8_t buffer[32 * 1024];
  const uint32_t size = static_cast<uint32_t>(content.bytes().size());
  stream.next_out = content.room();
  stream.avail_out = size;
  uint32_t left = packedSize;
  int status = Z_OK;
  while (status == Z_OK) {
    if (stream.avail_in == 0) {
      const uint32_t count = std::min<uint32_t>(left, sizeof(buffer));
      if (count == 0 || !m_source.read(offset + packedSize - left, buffer, count)) break;
      left -= count;
      stream.next_in = buffer;
      stream.avail_in = count;
    }
    status = inflate(&stream, Z_NO_FLUSH);
  }
  const bool complete = status == Z_STREAM_END && stream.total_out == size && left == 0;
  inflateEnd(&stream);
  return complete;
}

}  // namespace orvanta::badging
