#pragma once

#include <cstdint>
#include <memory>

#include "bytes.h"

namespace orvanta::badging {

/// Memory that holds one part of a package: mapped from the file, or unpacked.
class Blob {
 public:
  Blob() = default;
  /// Takes over a mapping made by mmap: `base` and `length` as mapped, `bytes` the part of it that is meant.
  Blob(void* base, size_t length, Bytes bytes) : m_base(base), m_length(length), m_bytes(bytes) {}
  /// Own memory, not touched yet.
  explicit Blob(size_t size);
  Blob(Blob&& other) noexcept { swap(other); }
  Blob& operator=(Blob&& other) noexcept {
    swap(other);
    return *this;
  }
  Blob(const Blob&) = delete;
  Blob& operator=(const Blob&) = delete;
  ~Blob();

  Bytes bytes() const { return m_bytes; }
  /// The room to fill; null for a mapping.
  uint8_t* room() { return m_own.get(); }

 private:
  void swap(Blob& other) noexcept;

  std::unique_ptr<uint8_t[]> m_own;
  void* m_base = nullptr;
  size_t m_length = 0;
  Bytes m_bytes;
};

/// Where a package's bytes come from.
class ByteSource {
 public:
  virtual ~ByteSource() = default;
  virtual uint64_t size() const = 0;
  /// Copies exactly `length` bytes; false when they are not all there.
  virtual bool read(uint64_t offset, uint8_t* to, size_t length) const = 0;
  /// A stretch of the source, without copying where that is possible; empty on failure.
  virtual Blob map(uint64_t offset, size_t length) const = 0;
};

/// A file of which only the requested parts are read: packages of a gigabyte are common.
class FileSource final : public ByteSource {
 public:
  FileSource() = default;
  FileSource(const FileSource&) = delete;
  FileSource& operator=(const FileSource&) = delete;
  ~FileSource() override;

  /// False when the file cannot be opened for reading. Others may go on writing it, rename it and delete it.
  bool open(const char* path);

  uint64_t size() const override { return m_size; }
  bool read(uint64_t offset, uint8_t* to, size_t length) const override;
  Blob map(uint64_t offset, size_t length) const override;

 private:
  intptr_t m_file = -1;  // as the system names an open file
  uint64_t m_size = 0;
};

enum class PathKind { Nothing, File, Folder };

/// What there is at `path`, links followed.
PathKind kindOf(const char* path);

/// From now on the process says `message` and ends with code 1 where a mapped file becomes shorter while it
/// is read, as one that is being written can.
void endIfFileShrinks(const char* message);

}  // namespace orvanta::badging
