// Feeds random packages to the reader. Run it with the seeds that the build makes.

#include <stddef.h>
#include <stdint.h>

#include <algorithm>
#include <optional>
#include <string_view>

#include "badging.h"

namespace {

using orvanta::badging::Blob;
using orvanta::badging::Bytes;
using orvanta::badging::Output;
using orvanta::badging::Work;

// Enough for every path, little enough for thousands of runs a second.
constexpr int64_t kWork = 20'000;

/// A copy of the exact size, so that a read past its end is caught.
Blob copyOf(const uint8_t* data, size_t size) {
  Blob blob(size);
  std::copy_n(data, size, blob.room());
  return blob;
}

class MemorySource final : public orvanta::badging::ByteSource {
 public:
  MemorySource(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}

  uint64_t size() const override { return m_size; }
  bool read(uint64_t offset, uint8_t* to, size_t length) const override {
    if (offset > m_size || length > m_size - offset) return false;
    std::copy_n(m_data + offset, length, to);
    return true;
  }
  Blob map(uint64_t offset, size_t length) const override {
    if (offset > m_size || length > m_size - offset) return {};
    return copyOf(m_data + offset, length);
  }

 private:
  const uint8_t* m_data;
  size_t m_size;
};

/// The bytes from the first place on where a chunk of this kind may begin.
std::optional<Blob> chunkIn(std::string_view input, std::string_view start) {
  const size_t at = input.find(start);
  if (at == std::string_view::npos) return {};
  return copyOf(reinterpret_cast<const uint8_t*>(input.data()) + at, input.size() - at);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace std::string_view_literals;
  Output output(-1);
  Output errors(-1);
  dump("badging", MemorySource(data, size), output, errors, Work(kWork));
  dump("icon", MemorySource(data, size), output, errors, Work(kWork));

  // Most mutations break the archive around the parts, so the parts are fed directly as well.
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::optional<Blob> manifest = chunkIn(input, "\x03\x00\x08\x00"sv);
  const std::optional<Blob> table = chunkIn(input, "\x02\x00\x0c\x00"sv);
  if (manifest)
    dumpParts("badging", table ? table->bytes() : Bytes(), manifest->bytes(), output, errors, Work(kWork));
  return 0;
}
