#include "locale_data.h"

#include <algorithm>
#include <utility>

namespace orvanta::badging {

namespace {

#include "locale_tables.inc"

constexpr size_t kKeyLength = 6;  // language and region, three places each

std::array<char, 10> makeKey(std::string_view language, std::string_view region,
                             std::string_view script = {}) {
  std::array<char, 10> key;
  key.fill(' ');
  std::copy_n(language.data(), std::min<size_t>(language.size(), 3), key.begin());
  std::copy_n(region.data(), std::min<size_t>(region.size(), 3), key.begin() + 3);
  std::copy_n(script.data(), std::min<size_t>(script.size(), 4), key.begin() + kKeyLength);
  return key;
}

/// Finds a row of a sorted table of fixed-width rows by its prefix; empty when there is none.
std::string_view find(std::string_view table, size_t width, std::string_view key) {
  size_t low = 0;
  size_t high = table.size() / width;
  while (low < high) {
    const size_t middle = (low + high) / 2;
    const std::string_view row = table.substr(middle * width, width);
    const int order = row.substr(0, key.size()).compare(key);
    if (order == 0) return row;
    (order < 0 ? low : high) = order < 0 ? middle + 1 : middle;
  }
  return {};
}

std::string_view likelyScript(std::string_view language, std::string_view region) {
  const auto key = makeKey(language, region);
  const std::string_view row = find(kLikelyScripts, 10, {key.data(), kKeyLength});
  return row.empty() ? row : row.substr(kKeyLength);
}

bool isRepresentative(const Locale& requested, std::string_view region) {
  const auto key = makeKey(requested.language, region, requested.script);
  return !find(kRepresentatives, key.size(), {key.data(), key.size()}).empty();
}

/// The chain of regions from one up to the language alone (an empty region).
class Ancestors {
 public:
  Ancestors(std::string_view language, std::string_view script, std::string_view region) {
    m_regions[m_count++] = region;
    while (!region.empty() && m_count < m_regions.size()) {
      region = parentOf(language, script, region);
      m_regions[m_count++] = region;
    }
  }

  size_t size() const { return m_count; }
  /// The place of a region in the chain, or the chain's size.
  size_t indexOf(std::string_view region) const {
    return static_cast<size_t>(std::find(m_regions.begin(), m_regions.begin() + m_count, region) -
                               m_regions.begin());
  }
  std::string_view operator[](size_t index) const { return m_regions[index]; }

 private:
  static std::string_view parentOf(std::string_view language, std::string_view script,
                                   std::string_view region) {
    if (language == "zh" && script != "Hant") return {};
    const auto key = makeKey(language, region);
    std::string_view row = find(kParentRegions, 9, {key.data(), kKeyLength});
    if (row.empty()) return {};
    row.remove_prefix(kKeyLength);
    return row.substr(0, row.find(' '));
  }

  std::array<std::string_view, 6> m_regions;
  size_t m_count = 0;
};

/// Steps from one region to the other over their nearest common ancestor.
size_t distance(const Ancestors& from, const Ancestors& to) {
  for (size_t i = 0; i < from.size(); ++i) {
    const size_t k = to.indexOf(from[i]);
    if (k < to.size()) return i + k;
  }
  return from.size() + to.size();
}

bool isSpecialSpanish(std::string_view language, std::string_view region) {
  return language == "es" && (region == "US" || region == "MX");
}

}  // namespace

std::string Locale::name() const {
  std::string text = language;
  const auto add = [&text](std::string_view part, std::string_view separator = "-") {
    if (part.empty()) return;
    if (!text.empty()) text += separator;
    text += part;
  };
  if (isAny()) return text;
  if (!scriptComputed) add(script);
  add(region);
  add(variant);
  add(numbers, "-u-nu-");
  return text.c_str();
}

void Locale::computeScript() {
  if (!script.empty() || language.empty()) return;
  std::string_view likely = likelyScript(language, region);
  if (likely.empty() && !region.empty()) likely = likelyScript(language, {});
  script = likely;
  scriptComputed = true;
}

bool isSameLanguage(const Locale& left, const Locale& right) {
  const auto isTagalog = [](std::string_view language) { return language == "tl" || language == "fil"; };
  return left.language == right.language || (isTagalog(left.language) && isTagalog(right.language));
}

int compareRegions(std::string_view left, std::string_view right, const Locale& requested) {
  if (left == right) return 0;
  // Apps without es-419 put Latin American Spanish under Mexico or the United States.
  const bool leftSpecial = isSpecialSpanish(requested.language, left);
  const bool rightSpecial = isSpecialSpanish(requested.language, right);
  if (leftSpecial && !rightSpecial && right != "419") {
    left = "419";
  } else if (rightSpecial && !leftSpecial && left != "419") {
    right = "419";
  }
  const Ancestors request(requested.language, requested.script, requested.region);
  const size_t leftIndex = request.indexOf(left);
  const size_t rightIndex = request.indexOf(right);
  if (leftIndex < request.size() || rightIndex < request.size()) return leftIndex <= rightIndex ? 1 : -1;

  const size_t leftDistance = distance({requested.language, requested.script, left}, request);
  const size_t rightDistance = distance({requested.language, requested.script, right}, request);
  if (leftDistance != rightDistance) return leftDistance < rightDistance ? 1 : -1;
  const bool leftRepresents = isRepresentative(requested, left);
  const bool rightRepresents = isRepresentative(requested, right);
  if (leftRepresents != rightRepresents) return leftRepresents ? 1 : -1;
  // Only the codes are left to compare: letters before digits, digits from the last one on.
  const bool leftDigits = left.size() == 3;
  const bool rightDigits = right.size() == 3;
  if (leftDigits != rightDigits) return rightDigits ? 1 : -1;
  const bool lower =
      leftDigits ? std::lexicographical_compare(left.rbegin(), left.rend(), right.rbegin(), right.rend())
                 : left < right;
  return lower ? 1 : -1;
}

bool isCloseToUsEnglish(std::string_view region) {
  const Ancestors ancestors("en", "Latn", region);
  return ancestors.indexOf("001") == ancestors.size();
}

}  // namespace orvanta::badging
