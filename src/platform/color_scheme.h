#pragma once

namespace orvanta {

enum class ColorScheme { Light, Dark };

/// What the desktop prefers now. The variable ORVANTA_COLOR_SCHEME ("light" or "dark") overrules it; a
/// desktop that does not say counts as light.
ColorScheme desktopColorScheme();

}  // namespace orvanta
