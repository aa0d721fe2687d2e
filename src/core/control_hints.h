#pragma once

#include <span>

#include "text/text.h"

class QWidget;

namespace orvanta {

/// What a control of the main window is called, and what it does.
struct ControlHint {
  const char16_t* name;  ///< of the control in the design; a row of the device panel is that of its frame
  Designed caption;
  const char16_t* chinese;
  const char16_t* english;

  Bilingual sentence() const { return {QString::fromUtf16(chinese), QString::fromUtf16(english)}; }
};

/// In the order in which they stand in the window.
std::span<const ControlHint> controlHints();

/// Of the control, or of the frame that it stands in; null if it needs none.
const ControlHint* hintFor(const QWidget* control);

}  // namespace orvanta
