#include "core/enabled_controls.h"

namespace orvanta {

bool isEnabled(Control control, const State& state) {
  using Phase = Availability::Phase;
  const Phase phase = state.availability().phase;
  const bool loaded = state.package.NoApkLoaded == 0;
  const bool deviceMayAnswer = phase == Phase::AsStarted || phase == Phase::Answered;
  const bool installOver = phase == Phase::Unlocked;
  switch (control) {
    case Control::Command1:
      return loaded && deviceMayAnswer;
    case Control::Command2:
      return loaded && (deviceMayAnswer || installOver);
    case Control::Command3:
      return phase != Phase::Locked;
    case Control::Command4:
    case Control::Command5:
      return loaded && state.availability().mayUninstall;
    case Control::Command6:
      return deviceMayAnswer || installOver;
    case Control::Command9:
      return deviceMayAnswer && !state.InstalledAppsClosed();
    case Control::Command10:
    case Control::Command11:
    case Control::Command12:
      return deviceMayAnswer;
    case Control::Check1:
    case Control::Fields:
      return loaded;
  }
  return true;
}

}  // namespace orvanta
