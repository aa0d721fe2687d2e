#pragma once

#include <array>
#include <string>
#include <string_view>

namespace orvanta::badging {

/// A locale as resource configurations hold it, unpacked: "zh", "TW", "Hant". Absent parts are empty.
struct Locale {
  std::string language;  ///< two or three letters
  std::string region;    ///< two letters or three digits
  std::string script;    ///< stated, or computed from language and region
  std::string variant;
  std::string numbers;  ///< numbering system
  bool scriptComputed = false;

  bool isAny() const { return language.empty() && region.empty(); }

  /// As badging prints it: language, stated script, region, variant, joined by hyphens.
  std::string name() const;

  /// Fills in the likely script where none is stated.
  void computeScript();
};

/// Tagalog and Filipino are one language under two codes.
bool isSameLanguage(const Locale& left, const Locale& right);

/// Which of two regions of the requested language is nearer to the requested one: more than 0 when `left` is.
int compareRegions(std::string_view left, std::string_view right, const Locale& requested);

/// Whether English in this region is nearer to American English than to the international kind.
bool isCloseToUsEnglish(std::string_view region);

}  // namespace orvanta::badging
