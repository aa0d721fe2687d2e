#pragma once

namespace orvanta {

/// Forms are measured in twips: 15 of them are one (device-independent) pixel.
inline constexpr int twipsPerPixel = 15;

/// Whole pixels in `twips`.
constexpr int pixels(int twips) {
  return twips / twipsPerPixel;
}

}  // namespace orvanta
