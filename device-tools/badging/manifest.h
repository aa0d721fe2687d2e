#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "bytes.h"
#include "resource_table.h"
#include "string_pool.h"
#include "work.h"

namespace orvanta::badging {

/// Why an attribute gave no value; the texts are the tool's own.
constexpr std::string_view kNoString = "attribute is not a string value";
constexpr std::string_view kNoInteger = "attribute is not an integer value";
constexpr std::string_view kCorrupt = "attribute value is corrupt";
constexpr std::string_view kNoTarget = "attribute value reference does not exist";
constexpr std::string_view kNoAttribute = "could not find attribute at index";

/// A binary manifest, read from front to back, and the attributes of the current element. A missing attribute
/// gives the default; one whose value has the wrong kind gives the default and sets `error`.
class Manifest {
 public:
  enum class Event { Start, End, Other, Done };

  Manifest(ResourceTable& table, Work& work) : m_work(work), m_table(table), m_strings(work) {}

  /// False when the device would find it corrupt.
  bool load(Bytes file);

  Event next();
  /// Skips to the end of the current element.
  void skipElement();

  uint32_t line() const { return m_node.u32(8); }
  /// The element's name; nothing when it cannot be read.
  std::optional<std::string> element() const;

  /// By the number that the platform gives the attribute.
  std::string string(uint32_t attribute, std::string_view& error) const;
  int32_t integer(uint32_t attribute, int32_t otherwise, std::string_view& error) const;
  /// By name: `space` is the attribute's namespace, or empty for none.
  std::string string(std::string_view space, std::string_view name, std::string_view& error) const;
  int32_t integer(std::string_view space, std::string_view name, int32_t otherwise,
                  std::string_view& error) const;
  /// References are followed through the resource table, as of this request.
  std::string resolved(uint32_t attribute, const Request& request, std::string_view& error) const;
  int32_t resolvedInteger(uint32_t attribute, int32_t otherwise, const Request& request,
                          std::string_view& error) const;

 private:
  bool placeNode(size_t at);
  bool isSound(Bytes node) const;
  size_t attributeCount() const;
  Bytes attributeAt(size_t index) const;
  Bytes find(uint32_t attribute) const;
  Bytes find(std::string_view space, std::string_view name) const;
  bool read(Bytes attribute, Value& value) const;
  std::string stringOf(Bytes attribute, std::string_view& error) const;
  int32_t integerOf(Bytes attribute, int32_t otherwise, std::string_view& error) const;

  Work& m_work;
  ResourceTable& m_table;
  StringPool m_strings;
  Bytes m_file;
  Bytes m_ids;
  Bytes m_node;
  Bytes m_content;  // of the node, behind its header
  size_t m_first = 0;
  size_t m_at = 0;
  bool m_begun = false;
  bool m_done = false;
};

}  // namespace orvanta::badging
