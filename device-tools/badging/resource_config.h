#pragma once

#include <cstdint>

#include "bytes.h"
#include "locale_data.h"

namespace orvanta::badging {

/// The configuration that is asked for: a phone of a given locale, density and version. Its other traits
/// (portrait, 320 by 480 dp, normal size) are fixed.
struct Request {
  Locale locale;
  uint16_t density = 0;
  uint16_t sdkVersion = 10000;  ///< of the system; later than any
};

/// The conditions under which resources apply, as far as requests can meet them.
struct ResourceConfig {
  Locale locale;
  uint16_t density = 0;

  /// Reads a configuration of any length; what newer formats have appended is left out.
  static ResourceConfig read(Bytes bytes);

  bool matches(const Request& request) const;

  /// Whether this one fits the request better than `other`; both match it.
  bool isBetterThan(const ResourceConfig& other, const Request& request) const;

 private:
  bool isLocaleBetterThan(const Locale& other, const Locale& requested) const;

  bool m_neverMatches = false;
  uint8_t m_orientation = 0;
  uint8_t m_screenSize = 0;
  uint16_t m_smallestWidth = 0;
  uint16_t m_width = 0;
  uint16_t m_height = 0;
  uint16_t m_sdkVersion = 0;
};

}  // namespace orvanta::badging
