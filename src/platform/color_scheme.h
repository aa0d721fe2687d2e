#pragma once

namespace orvanta {

enum class ColorScheme { Light, Dark };

/// What the desktop prefers now; light if it does not say. The variable ORVANTA_COLOR_SCHEME ("light" or
/// "dark") overrides it.
ColorScheme desktopColorScheme();

}  // namespace orvanta
