#include "resource_config.h"

#include <string_view>
#include <utility>

namespace orvanta::badging {

namespace {

constexpr uint8_t kPortrait = 1;
constexpr uint8_t kNormalSize = 2;
constexpr int kWidth = 320;
constexpr int kHeight = 480;
constexpr uint16_t kMediumDensity = 160;
constexpr uint16_t kAnyDensity = 0xfffe;

constexpr uint8_t kSizeMask = 0x0f;  // of the screen layout; the rest is length and direction
constexpr uint8_t kUsedUiMode = 0x3f;
constexpr uint8_t kUsedInputFlags = 0x0f;
constexpr uint8_t kUsedLayout2 = 0x03;
constexpr uint8_t kUsedColorMode = 0x0f;

/// Two letters as they are, or three packed into fifteen bits with the top bit set.
std::string unpack(uint8_t first, uint8_t second, char base) {
  if (first & 0x80) {
    const auto letter = [base](int value) { return static_cast<char>(base + value); };
    return {letter(second & 0x1f), letter(((second & 0xe0) >> 5) + ((first & 0x03) << 3)),
            letter((first & 0x7c) >> 2)};
  }
  if (first == 0 && second == 0) return {};
  return {static_cast<char>(first), static_cast<char>(second)};
}

std::string fixedText(Bytes bytes) {
  size_t length = 0;
  while (length < bytes.size() && bytes.u8(length) != 0) ++length;
  return {reinterpret_cast<const char*>(bytes.data()), length};
}

}  // namespace

ResourceConfig ResourceConfig::read(Bytes bytes) {
  bytes = bytes.sub(0, bytes.u32(0));
  ResourceConfig config;
  config.locale.language = unpack(bytes.u8(8), bytes.u8(9), 'a');
  config.locale.region = unpack(bytes.u8(10), bytes.u8(11), '0');
  config.locale.script = fixedText(bytes.sub(36, 4));
  config.locale.variant = fixedText(bytes.sub(40, 8));
  config.locale.numbers = fixedText(bytes.sub(53, 8));
  config.locale.computeScript();
  config.m_orientation = bytes.u8(12);
  config.density = bytes.u16(14);
  config.m_sdkVersion = bytes.u16(24);
  config.m_screenSize = bytes.u8(28) & kSizeMask;
  config.m_smallestWidth = bytes.u16(30);
  config.m_width = bytes.u16(32);
  config.m_height = bytes.u16(34);

  const bool hasNetwork = bytes.u32(4) != 0;
  const bool hasTouchscreen = bytes.u8(13) != 0;
  const bool hasInput = bytes.u16(16) != 0 || (bytes.u8(18) & kUsedInputFlags) != 0;
  const bool hasPixels = bytes.u32(20) != 0;
  const bool hasLayout = (bytes.u8(28) & ~kSizeMask) != 0 || (bytes.u8(29) & kUsedUiMode) != 0;
  const bool hasLayout2 = (bytes.u8(48) & kUsedLayout2) != 0 || (bytes.u8(49) & kUsedColorMode) != 0;
  config.m_neverMatches = hasNetwork || hasTouchscreen || hasInput || hasPixels || hasLayout || hasLayout2 ||
                          bytes.u16(26) != 0 || config.m_orientation > kPortrait ||
                          config.m_screenSize > kNormalSize || config.m_smallestWidth > kWidth ||
                          config.m_width > kWidth || config.m_height > kHeight;
  return config;
}

bool ResourceConfig::matches(const Request& request) const {
  if (m_neverMatches || m_sdkVersion > request.sdkVersion) return false;
  if (locale.isAny()) return true;
  const Locale& requested = request.locale;
  if (!isSameLanguage(locale, requested)) return false;
  // A reader of one script may not read another; where scripts are unknown, the region decides.
  if (!requested.script.empty() && !locale.script.empty()) return locale.script == requested.script;
  return locale.region.empty() || locale.region == requested.region;
}

bool ResourceConfig::isLocaleBetterThan(const Locale& other, const Locale& requested) const {
  if (requested.isAny() || (locale.isAny() && other.isAny())) return false;
  if (!isSameLanguage(locale, other)) {
    // One of them has no language. That one is better for American English, the default language of most
    // apps, unless the other is American too.
    if (requested.language == "en") {
      const auto isAmerican = [](std::string_view region) { return region.empty() || region == "US"; };
      const bool forUs = requested.region == "US";
      if (forUs || isCloseToUsEnglish(requested.region)) {
        const std::string& region = locale.language.empty() ? other.region : locale.region;
        const bool near = forUs ? isAmerican(region) : isCloseToUsEnglish(region);
        return locale.language.empty() ? !near : near;
      }
    }
    return !locale.language.empty();
  }
  const int regions = compareRegions(locale.region, other.region, requested);
  if (regions != 0) return regions > 0;
  const bool sameVariant = locale.variant == requested.variant;
  if (sameVariant != (other.variant == requested.variant)) return sameVariant;
  const bool sameNumbers = locale.numbers == requested.numbers;
  if (sameNumbers != (other.numbers == requested.numbers)) return sameNumbers;
  return locale.language == requested.language && other.language != requested.language;
}

bool ResourceConfig::isBetterThan(const ResourceConfig& other, const Request& request) const {
  if (isLocaleBetterThan(other.locale, request.locale)) return true;
  if (m_smallestWidth != other.m_smallestWidth) return m_smallestWidth > other.m_smallestWidth;
  // Both are no larger than the request, so the larger is the nearer.
  const int extent = m_width + m_height;
  const int otherExtent = other.m_width + other.m_height;
  if (extent != otherExtent) return extent > otherExtent;
  if (m_screenSize != other.m_screenSize) {
    const int size = m_screenSize ? m_screenSize : kNormalSize;
    const int otherSize = other.m_screenSize ? other.m_screenSize : kNormalSize;
    return size == otherSize ? m_screenSize != 0 : size > otherSize;
  }
  if (m_orientation != other.m_orientation) return m_orientation != 0;
  if (density != other.density) {
    const int mine = density ? density : kMediumDensity;
    const int theirs = other.density ? other.density : kMediumDensity;
    if (mine == kAnyDensity) return true;
    if (theirs == kAnyDensity) return false;
    const bool noWish = request.density == 0 || request.density == kAnyDensity;
    const int64_t wish = noWish ? kMediumDensity : request.density;
    const bool bigger = mine >= theirs;
    const int64_t high = bigger ? mine : theirs;
    const int64_t low = bigger ? theirs : mine;
    if (wish >= high) return bigger;
    if (low >= wish) return !bigger;
    // Scaling down counts as twice as good as scaling up.
    return (2 * low - wish) * high > wish * wish ? !bigger : bigger;
  }
  if (m_sdkVersion != other.m_sdkVersion) return m_sdkVersion > other.m_sdkVersion;
  return false;
}

}  // namespace orvanta::badging
