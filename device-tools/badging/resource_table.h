#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bytes.h"
#include "resource_config.h"
#include "string_pool.h"
#include "work.h"

namespace orvanta::badging {

/// A typed value, of a manifest's attribute or of a resource.
struct Value {
  static constexpr uint8_t kReference = 0x01;
  static constexpr uint8_t kString = 0x03;
  static constexpr uint8_t kDynamicReference = 0x07;
  static constexpr uint8_t kDynamicAttribute = 0x08;

  uint8_t type = 0;
  uint32_t data = 0;

  bool isInteger() const { return type >= 0x10 && type <= 0x1f; }
};

/// A package's resource table: values by id, each in one version per configuration. It only keeps the places
/// of the chunks; the memory it was loaded from must outlive it.
class ResourceTable {
 public:
  explicit ResourceTable(Work& work) : m_work(work), m_strings(work) {}

  /// Reads the table's outline; false when the device would find it corrupt.
  bool load(Bytes table);

  /// Follows references, at most twenty, to the value that fits the request best. False when one of them has
  /// no value for this request; a reference that cannot be followed for another reason stays.
  bool resolve(Value& value, const Request& request);

  /// A string of the table.
  std::optional<std::string> string(uint32_t index) const { return m_strings.at(index); }

  /// Translates the package of an id, or of a reference, that was numbered when the app was built.
  bool translateId(uint32_t& id) const;
  bool translate(Value& value) const;

  /// All locales that something in the table is for, sorted by name; the empty one stands for "any".
  std::vector<Locale> locales() const;
  /// All densities that something in the table is for, in rising order.
  std::vector<uint16_t> densities() const;

 private:
  struct TypeChunk {
    Bytes bytes;
    ResourceConfig config;
  };
  /// One declaration of a type, with the chunks that follow it.
  struct TypeSpec {
    const uint8_t* package = nullptr;
    uint32_t entryCount = 0;
    std::vector<TypeChunk> chunks;
  };
  struct Package {
    uint8_t id = 0;
    Bytes name;  // UTF-16
    std::vector<std::pair<Bytes, uint8_t>> libraries;
    std::array<uint8_t, 256> translation = {};
    std::array<std::vector<TypeSpec>, 256> types;
  };

  bool loadPackage(Bytes chunk, Bytes table);
  bool loadTypeSpec(Bytes chunk, Package& package, const uint8_t* origin);
  bool loadType(Bytes chunk, Package& package, const uint8_t* origin);
  static bool loadLibraries(Bytes chunk, Package& package);
  void fillTranslations();
  template <typename Visit>
  void forEachChunk(Visit visit) const;

  enum class Found { Value, Nothing, Unusable };
  Found find(Value& value, const Request& request);
  static uint32_t entryOffset(Bytes chunk, uint32_t entry);
  static bool translateId(const Package& package, uint32_t& id);
  static bool translate(const Package& package, Value& value);

  Work& m_work;
  StringPool m_strings;
  std::vector<std::unique_ptr<Package>> m_packages;
  std::array<Package*, 256> m_byId = {};
  uint32_t m_nextLibraryId = 2;
  size_t m_chunkCount = 0;
};

}  // namespace orvanta::badging
