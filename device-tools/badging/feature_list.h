#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "output.h"

namespace orvanta::badging {

/// The features that a package asks for: those in its manifest and those implied by its permissions.
class Features {
 public:
  /// A feature that the manifest names outside any group.
  void add(const std::string& name, bool required, int32_t version);

  void beginGroup(std::string label);
  /// A feature inside the group begun last.
  void addToGroup(const std::string& name, int32_t version);

  /// What a permission implies; `sdk23` for one that is asked for from that version on only.
  void addPermission(const std::string& permission, int targetSdk, bool sdk23);
  /// What the screen orientation of an activity implies.
  void addOrientation(int32_t orientation);

  /// Prints the groups, or without groups one of all features, stated and implied.
  void print(Output& output);

 private:
  struct Feature {
    bool required = true;
    int32_t version = -1;
  };
  using Stated = std::map<std::string, Feature, std::less<>>;
  struct Group {
    std::string label;
    Stated features;
  };
  struct Implied {
    bool sdk23 = false;
    std::set<std::string> reasons;
  };

  static void addParents(Stated& features, std::string_view name);
  void imply(std::string_view name, std::string reason, bool sdk23);
  static void print(Output& output, const Group& group);
  void printImplied(Output& output) const;

  bool keep(std::string_view name);

  size_t m_kept = 0;
  Stated m_common;
  std::vector<Group> m_groups;
  std::map<std::string, Implied, std::less<>> m_implied;
};

}  // namespace orvanta::badging
