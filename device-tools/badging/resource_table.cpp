#include "resource_table.h"

#include <algorithm>

#include "chunk.h"

namespace orvanta::badging {

namespace {

constexpr uint16_t kStringPoolChunk = 0x0001;
constexpr uint16_t kPackageChunk = 0x0200;
constexpr uint16_t kTypeChunk = 0x0201;
constexpr uint16_t kTypeSpecChunk = 0x0202;
constexpr uint16_t kLibraryChunk = 0x0203;
constexpr size_t kTableHeaderSize = 12;
constexpr size_t kPackageHeaderSize = 284;  // without the last field, which came later
constexpr size_t kTypeSpecHeaderSize = 16;
constexpr size_t kTypeHeaderSize = 24;  // with the size of the configuration
constexpr size_t kConfigOffset = 20;
constexpr size_t kEntrySize = 8;
constexpr size_t kLibrarySize = 260;
constexpr size_t kPackageNameLength = 128;
// Bounds memory; the largest real tables have a few thousand.
constexpr size_t kMostChunks = 16 * 1024;

constexpr uint8_t kSparse = 0x01;
constexpr uint8_t kOffset16 = 0x02;
constexpr uint16_t kComplexEntry = 0x0001;
constexpr uint16_t kCompactEntry = 0x0008;
constexpr uint32_t kNoEntry = UINT32_MAX;
constexpr int kMostReferences = 20;

constexpr uint8_t kSystemPackage = 0x01;
constexpr uint8_t kAppPackage = 0x7f;

/// A name in UTF-16, cut at its NUL.
Bytes packageName(Bytes bytes) {
  size_t length = 0;
  while (length + 1 < kPackageNameLength && bytes.u16(2 * length) != 0) ++length;
  return bytes.sub(0, 2 * length);
}

bool isSameName(Bytes left, Bytes right) {
  return left.size() == right.size() && std::equal(left.data(), left.data() + left.size(), right.data());
}

bool isPoolSound(Bytes pool) {
  Work none(0);
  return StringPool(none).load(pool);
}

}  // namespace

bool ResourceTable::load(Bytes table) {
  const uint32_t size = table.u32(4);
  const uint32_t headerSize = chunkHeaderSize(table);
  if (table.size() < kTableHeaderSize || headerSize > size || size > table.size()) return false;
  if (((headerSize | size) & 3) != 0) return false;
  table = table.sub(0, size);
  const uint32_t packageCount = table.u32(8);
  uint32_t packages = 0;
  for (size_t at = headerSize; at + kChunkHeaderSize <= size && table.u32(at + 4) <= size - at;) {
    const Bytes chunk = chunkAt(table, at);
    if (chunk.size() == 0) return false;
    if (chunkType(chunk) == kStringPoolChunk && !m_strings.isLoaded()) {
      if (!m_strings.load(chunk)) return false;
    } else if (chunkType(chunk) == kPackageChunk) {
      if (packages++ == packageCount || !loadPackage(chunk, table.sub(at))) return false;
    }
    at += chunk.size();
  }
  fillTranslations();
  return packages == packageCount && m_strings.isLoaded();
}

bool ResourceTable::loadPackage(Bytes chunk, Bytes table) {
  if (chunkHeaderSize(chunk) < kPackageHeaderSize) return false;
  const uint32_t typeStrings = chunk.u32(268);
  const uint32_t keyStrings = chunk.u32(276);
  if (typeStrings >= chunk.size() || keyStrings >= chunk.size() || ((typeStrings | keyStrings) & 3) != 0)
    return false;
  uint32_t id = chunk.u32(8);
  if (id > UINT8_MAX) return false;
  if (id == 0) id = m_nextLibraryId++ & UINT8_MAX;
  if (!isPoolSound(table.sub(typeStrings)) || !isPoolSound(table.sub(keyStrings))) return false;
  if (!m_byId[id]) {
    m_packages.push_back(std::make_unique<Package>());
    m_byId[id] = m_packages.back().get();
    m_byId[id]->id = static_cast<uint8_t>(id);
    m_byId[id]->name = packageName(chunk.sub(12));
  }
  Package& package = *m_byId[id];

  for (size_t at = chunkHeaderSize(chunk); at + kChunkHeaderSize <= chunk.size();) {
    if (chunk.u32(at + 4) > chunk.size() - at) break;
    const Bytes inner = chunkAt(chunk, at);
    if (inner.size() == 0 || ++m_chunkCount > kMostChunks) return false;
    bool sound = true;
    if (chunkType(inner) == kTypeSpecChunk) sound = loadTypeSpec(inner, package, chunk.data());
    if (chunkType(inner) == kTypeChunk) sound = loadType(inner, package, chunk.data());
    if (chunkType(inner) == kLibraryChunk) sound = loadLibraries(inner, package);
    if (!sound) return false;
    at += inner.size();
  }
  return true;
}

bool ResourceTable::loadTypeSpec(Bytes chunk, Package& package, const uint8_t* origin) {
  const uint64_t entryCount = chunk.u32(12);
  const uint8_t type = chunk.u8(8);
  if (chunkHeaderSize(chunk) < kTypeSpecHeaderSize || type == 0) return false;
  if (chunkHeaderSize(chunk) + entryCount * sizeof(uint32_t) > chunk.size()) return false;
  if (entryCount > 0) package.types[type].push_back({origin, static_cast<uint32_t>(entryCount), {}});
  return true;
}

bool ResourceTable::loadType(Bytes chunk, Package& package, const uint8_t* origin) {
  const uint64_t entryCount = chunk.u32(12);
  const uint8_t type = chunk.u8(8);
  const uint64_t width = (chunk.u8(9) & kOffset16) != 0 ? sizeof(uint16_t) : sizeof(uint32_t);
  if (chunkHeaderSize(chunk) < kTypeHeaderSize || type == 0) return false;
  if (chunkHeaderSize(chunk) + entryCount * width > chunk.size()) return false;
  if (entryCount == 0) return true;
  std::vector<TypeSpec>& specs = package.types[type];
  if (chunk.u32(16) > chunk.size() - kEntrySize || specs.empty() || specs.back().package != origin)
    return false;
  const Bytes config = chunk.sub(kConfigOffset);
  specs.back().chunks.push_back({chunk, ResourceConfig::read(config)});
  return true;
}

bool ResourceTable::loadLibraries(Bytes chunk, Package& package) {
  const uint64_t count = chunk.u32(8);
  const size_t start = chunkHeaderSize(chunk);
  if (count * kLibrarySize > chunk.size() - start) return false;
  if (!package.libraries.empty()) return true;
  for (size_t i = 0; i < count; ++i) {
    const Bytes entry = chunk.sub(start + i * kLibrarySize, kLibrarySize);
    if (entry.u32(0) > UINT8_MAX) return false;
    // There are no more libraries than ids; anything beyond is dropped.
    if (i <= UINT8_MAX)
      package.libraries.emplace_back(packageName(entry.sub(4)), static_cast<uint8_t>(entry.u32(0)));
  }
  return true;
}

void ResourceTable::fillTranslations() {
  for (const auto& package : m_packages) {
    package->translation[kSystemPackage] = kSystemPackage;
    package->translation[kAppPackage] = kAppPackage;
    for (const auto& [name, id] : package->libraries) {
      for (const auto& other : m_packages) {
        if (isSameName(other->name, name)) package->translation[id] = other->id;
      }
    }
  }
}

template <typename Visit>
void ResourceTable::forEachChunk(Visit visit) const {
  for (const auto& package : m_packages) {
    for (const auto& specs : package->types) {
      for (const TypeSpec& typeSpec : specs) {
        for (const TypeChunk& chunk : typeSpec.chunks) visit(chunk);
      }
    }
  }
}

std::vector<Locale> ResourceTable::locales() const {
  std::vector<std::pair<std::string, const Locale*>> named;
  forEachChunk([&named](const TypeChunk& chunk) {
    // Most chunks are for the same locale as the one before.
    std::string name = chunk.config.locale.name();
    if (named.empty() || named.back().first != name)
      named.emplace_back(std::move(name), &chunk.config.locale);
  });
  std::sort(named.begin(), named.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<Locale> locales;
  for (size_t i = 0; i < named.size(); ++i) {
    if (i > 0 && named[i].first == named[i - 1].first) continue;
    locales.push_back(*named[i].second);
  }
  return locales;
}

std::vector<uint16_t> ResourceTable::densities() const {
  std::vector<uint16_t> densities;
  forEachChunk([&densities](const TypeChunk& chunk) {
    const uint16_t density = chunk.config.density ? chunk.config.density : 160;
    if (densities.empty() || densities.back() != density) densities.push_back(density);
  });
  std::sort(densities.begin(), densities.end());
  densities.erase(std::unique(densities.begin(), densities.end()), densities.end());
  return densities;
}

/// Where an entry begins after the chunk's table of offsets, in any of the table's forms.
uint32_t ResourceTable::entryOffset(Bytes chunk, uint32_t entry) {
  const uint32_t count = chunk.u32(12);
  const uint8_t flags = chunk.u8(9);
  const Bytes offsets = chunk.sub(chunkHeaderSize(chunk));
  if (flags & kSparse) {
    uint32_t low = 0;
    uint32_t high = count;
    while (low < high) {
      const uint32_t middle = low + (high - low) / 2;
      (offsets.u16(size_t{4} * middle) < entry ? low : high) =
          offsets.u16(size_t{4} * middle) < entry ? middle + 1 : middle;
    }
    if (low == count || offsets.u16(size_t{4} * low) != entry) return kNoEntry;
    return offsets.u16(size_t{4} * low + 2) * 4u;
  }
  if (entry >= count) return kNoEntry;
  if (flags & kOffset16) {
    const uint16_t offset = offsets.u16(size_t{2} * entry);
    return offset == UINT16_MAX ? kNoEntry : offset * 4u;
  }
  return offsets.u32(size_t{4} * entry);
}

ResourceTable::Found ResourceTable::find(Value& value, const Request& request) {
  const Package* package = m_byId[value.data >> 24];
  const uint32_t type = (value.data >> 16) & 0xff;
  const uint32_t entryIndex = value.data & 0xffff;
  if (!package || type == 0) return Found::Nothing;
  if (package->types[type].empty()) return Found::Unusable;
  const TypeChunk* best = nullptr;
  uint32_t bestOffset = kNoEntry;
  for (const TypeSpec& typeSpec : package->types[type]) {
    if (entryIndex >= typeSpec.entryCount) continue;
    if (!m_work.spend(1 + static_cast<int64_t>(typeSpec.chunks.size()))) return Found::Nothing;
    for (const TypeChunk& chunk : typeSpec.chunks) {
      if (!chunk.config.matches(request)) continue;
      const uint32_t offset = entryOffset(chunk.bytes, entryIndex);
      if (offset == kNoEntry || (best && !chunk.config.isBetterThan(best->config, request))) continue;
      best = &chunk;
      bestOffset = offset;
    }
  }
  if (!best) return Found::Nothing;

  const uint64_t offset = uint64_t{bestOffset} + best->bytes.u32(16);
  if (offset > best->bytes.size() - kEntrySize || (offset & 3) != 0) return Found::Unusable;
  const Bytes entry = best->bytes.sub(static_cast<size_t>(offset));
  const uint16_t flags = entry.u16(2);
  if (flags & kCompactEntry) {
    value = {static_cast<uint8_t>(flags >> 8), entry.u32(4)};
  } else {
    const uint16_t size = entry.u16(0);
    if (size < kEntrySize || (flags & kComplexEntry) != 0) return Found::Unusable;
    value = {entry.u8(size + 3u), entry.u32(size + 4u)};
  }
  return translate(*package, value) ? Found::Value : Found::Unusable;
}

bool ResourceTable::resolve(Value& value, const Request& request) {
  for (int i = 0; i < kMostReferences && value.type == Value::kReference && value.data != 0; ++i) {
    const Found found = find(value, request);
    if (found != Found::Value) return found == Found::Unusable;
  }
  return true;
}

bool ResourceTable::translateId(const Package& package, uint32_t& id) {
  const uint8_t packageId = static_cast<uint8_t>(id >> 24);
  if (id == 0 || packageId == kAppPackage) return true;
  const uint8_t translated = packageId == 0 ? package.id : package.translation[packageId];
  if (translated == 0) return false;
  id = (id & 0x00ffffff) | (uint32_t{translated} << 24);
  return true;
}

bool ResourceTable::translate(const Package& package, Value& value) {
  // A library refers to its own resources by package 0.
  const bool own = value.type == Value::kReference && value.data >> 24 == 0;
  if (!own && value.type != Value::kDynamicReference && value.type != Value::kDynamicAttribute) return true;
  if (!translateId(package, value.data)) return false;
  if (value.type == Value::kDynamicReference) value.type = Value::kReference;
  return true;
}

bool ResourceTable::translateId(uint32_t& id) const {
  return m_packages.empty() || translateId(*m_packages.front(), id);
}

bool ResourceTable::translate(Value& value) const {
  return m_packages.empty() || translate(*m_packages.front(), value);
}

}  // namespace orvanta::badging
