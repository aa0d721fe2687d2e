#include "manifest.h"

#include "chunk.h"

namespace orvanta::badging {

namespace {

constexpr uint16_t kStringPoolChunk = 0x0001;
constexpr uint16_t kIdsChunk = 0x0180;
constexpr uint16_t kFirstNode = 0x0100;
constexpr uint16_t kStartNode = 0x0102;
constexpr uint16_t kEndNode = 0x0103;
constexpr uint16_t kLastNode = 0x017f;
constexpr size_t kNodeHeaderSize = 16;
constexpr size_t kStartSize = 20;

/// The least size of a node's body; nothing for a kind that is skipped.
std::optional<size_t> leastContent(uint16_t type) {
  switch (type) {
    case 0x0100:
    case 0x0101:
      return 8;  // namespace
    case kStartNode:
      return kStartSize;
    case kEndNode:
      return 8;
    case 0x0104:
      return 12;  // text
    default:
      return {};
  }
}

}  // namespace

bool Manifest::load(Bytes file) {
  const uint32_t size = file.u32(4);
  const size_t headerSize = chunkHeaderSize(file);
  if (headerSize > size || size > file.size()) return false;
  m_file = file.sub(0, size);
  for (size_t at = headerSize; at + kChunkHeaderSize < size && m_file.u32(at + 4) < size - at;) {
    const Bytes chunk = chunkAt(m_file, at);
    if (chunk.size() == 0) return false;
    const uint16_t type = chunkType(chunk);
    if (type == kStringPoolChunk) {
      m_strings.load(chunk);
    } else if (type == kIdsChunk) {
      m_ids = chunk.sub(chunkHeaderSize(chunk));
    } else if (type >= kFirstNode && type <= kLastNode) {
      m_first = at;
      return isSound(chunk) && placeNode(at) && m_strings.isLoaded();
    }
    at += chunk.size();
  }
  return false;
}

/// The node's sizes, and for an element the room for its attributes.
bool Manifest::isSound(Bytes node) const {
  if (chunkHeaderSize(node) < kNodeHeaderSize) return false;
  if (chunkType(node) != kStartNode) return true;
  const Bytes content = node.sub(chunkHeaderSize(node));
  const size_t attributes = size_t{content.u16(10)} * content.u16(12);
  return content.size() >= kStartSize && content.u16(8) + attributes <= content.size();
}

/// Goes to the first node of a known kind from `at` on; false at the end, and where the file is broken.
bool Manifest::placeNode(size_t at) {
  while (at < m_file.size()) {
    m_node = chunkAt(m_file, at, kNodeHeaderSize);
    if (m_node.size() == 0 || !isSound(m_node)) return false;
    m_content = m_node.sub(chunkHeaderSize(m_node));
    m_at = at;
    const std::optional<size_t> least = leastContent(chunkType(m_node));
    if (least) return m_content.size() >= *least;
    at += m_node.size();
  }
  return false;
}

Manifest::Event Manifest::next() {
  if (!m_begun) {
    m_begun = true;
    m_done = !placeNode(m_first);
  } else if (!m_done) {
    m_done = !placeNode(m_at + m_node.size());
  }
  if (m_done) return Event::Done;
  const uint16_t type = chunkType(m_node);
  return type == kStartNode ? Event::Start : type == kEndNode ? Event::End : Event::Other;
}

void Manifest::skipElement() {
  int depth = 1;
  while (depth > 0) {
    const Event event = next();
    if (event == Event::Done) return;
    if (event == Event::Start) ++depth;
    if (event == Event::End) --depth;
  }
}

std::optional<std::string> Manifest::element() const {
  return m_strings.at(m_content.u32(4));
}

/// How many attributes a search has to look at.
size_t Manifest::attributeCount() const {
  const size_t count = chunkType(m_node) == kStartNode ? m_content.u16(12) : 0;
  return m_work.spend(1 + static_cast<int64_t>(count)) ? count : 0;
}

Bytes Manifest::attributeAt(size_t index) const {
  return m_content.sub(m_content.u16(8) + m_content.u16(10) * index);
}

Bytes Manifest::find(uint32_t attribute) const {
  const size_t count = attributeCount();
  for (size_t i = 0; i < count; ++i) {
    const Bytes candidate = attributeAt(i);
    const size_t name = candidate.u32(4);
    if (name >= m_ids.size() / sizeof(uint32_t)) continue;
    uint32_t id = m_ids.u32(name * sizeof(uint32_t));
    m_table.translateId(id);
    if (id == attribute) return candidate;
  }
  return {};
}

Bytes Manifest::find(std::string_view space, std::string_view name) const {
  const size_t count = attributeCount();
  for (size_t i = 0; i < count; ++i) {
    const Bytes candidate = attributeAt(i);
    if (m_strings.at(candidate.u32(4)) != name) continue;
    const std::optional<std::string> candidateSpace = m_strings.at(candidate.u32(0));
    if (space.empty() ? !candidateSpace : candidateSpace == space) return candidate;
  }
  return {};
}

bool Manifest::read(Bytes attribute, Value& value) const {
  value = {attribute.u8(15), attribute.u32(16)};
  return m_table.translate(value);
}

std::string Manifest::stringOf(Bytes attribute, std::string_view& error) const {
  if (attribute.size() == 0) return {};
  Value value;
  if (!read(attribute, value)) {
    error = kNoAttribute;
    return {};
  }
  if (value.type != Value::kString) {
    error = kNoString;
    return {};
  }
  return m_strings.at(attribute.u32(8)).value_or(std::string());
}

int32_t Manifest::integerOf(Bytes attribute, int32_t otherwise, std::string_view& error) const {
  if (attribute.size() == 0) return otherwise;
  Value value;
  if (!read(attribute, value)) {
    error = kNoAttribute;
    return otherwise;
  }
  if (!value.isInteger()) {
    error = kNoInteger;
    return otherwise;
  }
  return static_cast<int32_t>(value.data);
}

std::string Manifest::string(uint32_t attribute, std::string_view& error) const {
  return stringOf(find(attribute), error);
}

int32_t Manifest::integer(uint32_t attribute, int32_t otherwise, std::string_view& error) const {
  return integerOf(find(attribute), otherwise, error);
}

std::string Manifest::string(std::string_view space, std::string_view name, std::string_view& error) const {
  return stringOf(find(space, name), error);
}

int32_t Manifest::integer(std::string_view space, std::string_view name, int32_t otherwise,
                          std::string_view& error) const {
  return integerOf(find(space, name), otherwise, error);
}

std::string Manifest::resolved(uint32_t attribute, const Request& request, std::string_view& error) const {
  const Bytes found = find(attribute);
  if (found.size() == 0) return {};
  Value value;
  if (!read(found, value)) {
    error = kCorrupt;
    return {};
  }
  if (value.type == Value::kString) return m_strings.at(found.u32(8)).value_or(std::string());
  const bool exists = m_table.resolve(value, request);
  if (value.type != Value::kString) {
    error = exists ? kNoString : kNoTarget;
    return {};
  }
  return m_table.string(value.data).value_or(std::string());
}

int32_t Manifest::resolvedInteger(uint32_t attribute, int32_t otherwise, const Request& request,
                                  std::string_view& error) const {
  const Bytes found = find(attribute);
  if (found.size() == 0) return otherwise;
  Value value;
  read(found, value);
  m_table.resolve(value, request);
  if (!value.isInteger()) {
    error = kNoInteger;
    return otherwise;
  }
  return static_cast<int32_t>(value.data);
}

}  // namespace orvanta::badging
