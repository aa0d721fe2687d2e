#pragma once

#include <cstdint>
#include <string_view>

#include "byte_source.h"

namespace orvanta::badging {

/// A package as a zip archive. Reads only the end record, the central directory and the requested entries,
/// and accepts and refuses the same archives as the device's own reader.
class ZipArchive {
 public:
  enum class Result {
    Ready,      ///< the content is in the blob
    Missing,    ///< no such entry, or none that can be located
    Unreadable  ///< it is there, but cannot be unpacked or is larger than allowed
  };

  explicit ZipArchive(const ByteSource& source) : m_source(source) {}

  /// Walks the whole central directory and keeps where the manifest and the resource table are.
  /// False when this is not an archive, or one that the device would refuse as a whole.
  bool open();

  Result manifest(Blob& content) const;
  Result resourceTable(Blob& content) const;
  /// Any other entry, of at most so many bytes. Walks the directory once more.
  Result file(std::string_view name, uint32_t largest, Blob& content) const;

 private:
  struct Entry {
    bool found = false;
    uint16_t method = 0;
    uint32_t crc = 0;
    uint32_t packedSize = 0;
    uint32_t size = 0;
    uint32_t headerOffset = 0;
  };

  bool findDirectory();
  bool walkDirectory();
  template <typename Visit>
  bool forEachEntry(Visit visit) const;
  Result load(const Entry& entry, std::string_view name, uint32_t largest, Blob& content) const;
  uint64_t dataOffset(const Entry& entry, std::string_view name) const;
  bool inflateTo(uint64_t offset, uint32_t packedSize, Blob& content) const;

  const ByteSource& m_source;
  uint64_t m_directoryOffset = 0;
  uint64_t m_directorySize = 0;
  uint16_t m_entryCount = 0;
  Entry m_manifest;
  Entry m_table;
};

}  // namespace orvanta::badging
