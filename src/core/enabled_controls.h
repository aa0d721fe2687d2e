#pragma once

#include "core/state.h"

namespace orvanta {

/// The controls of the main window that are not always enabled.
enum class Control {
  Command1,
  Command2,
  Command3,
  Command4,
  Command5,
  Command6,
  Command9,
  Command10,
  Command11,
  Command12,
  Check1,
  Fields,  ///< `Frame1` to `Frame6`
};

/// Whether `control` is enabled in `state`. Nothing else decides it.
bool isEnabled(Control control, const State& state);

}  // namespace orvanta
