#pragma once

#include <span>

#include "text/text.h"

/// The device panel as one table: a button is one row.
namespace orvanta {

/// A captioned line of buttons; its object name is "Frame" and the number.
struct PanelFrame {
  int number;
  Designed caption;
  int topTwips;
};

/// What a press sends: one property or two, each with its value as the device's shell takes them, or the
/// reboot. There is no empty press, so a row without one does not compile.
class PanelPress {
 public:
  constexpr PanelPress(const char16_t* property) : first(property) {}
  constexpr PanelPress(const char16_t* property, const char16_t* next) : first(property), second(next) {}
  static constexpr PanelPress reboot() { return {nullptr}; }

  const char16_t* first;             ///< null: the reboot
  const char16_t* second = nullptr;  ///< set when `first` has been
};

/// A button; its object name is "Command13_" and the index. The screen shows them in the order of the table.
struct PanelButton {
  int Index;
  const PanelFrame* frame;
  Designed caption;
  PanelPress press;
};

/// All buttons of the panel.
std::span<const PanelButton> panelButtons();

}  // namespace orvanta
