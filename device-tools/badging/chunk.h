#pragma once

#include "bytes.h"

namespace orvanta::badging {

/// The unit of manifests and resource tables: a type, the header's size and its own size, then the content.
constexpr size_t kChunkHeaderSize = 8;

/// The chunk at `at`, cut to its size; empty when its sizes contradict each other or the data around it.
inline Bytes chunkAt(Bytes data, size_t at, size_t smallestHeader = kChunkHeaderSize) {
  const Bytes rest = data.sub(at);
  const uint32_t headerSize = rest.u16(2);
  const uint32_t size = rest.u32(4);
  if (headerSize < smallestHeader || headerSize > size || ((headerSize | size) & 3) != 0) return {};
  return size <= rest.size() ? rest.sub(0, size) : Bytes();
}

inline uint16_t chunkType(Bytes chunk) {
  return chunk.u16(0);
}
inline uint16_t chunkHeaderSize(Bytes chunk) {
  return chunk.u16(2);
}

}  // namespace orvanta::badging
