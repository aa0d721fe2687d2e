#include "device/panel_table.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "text/text.h"

namespace orvanta {

namespace {

constexpr PanelFrame guardian{11, Designed(u"Guardian"), 120};
constexpr PanelFrame refreshRate{12, Designed(u"Set Refresh Rate"), 960};
constexpr PanelFrame fullRateCapture{14, Designed(u"Full Rate Capture"), 1800};
constexpr PanelFrame captureSize{15, Designed(u"Video Capture Size"), 2640};
constexpr PanelFrame foveation{13, Designed(u"Set Fixed Foveated Rendering level"), 3480};
constexpr PanelFrame textureSize{16, Designed(u"Texture Size"), 4320};
constexpr PanelFrame reboot{17, Designed(u"Reboot Quest"), 5520};

constexpr PanelButton buttons[] = {
    // The property pauses the guardian: "On" sends 1.
    {0, &guardian, Designed(u"On"), u"debug.oculus.guardian_pause 1"},
    {1, &guardian, Designed(u"Off"), u"debug.oculus.guardian_pause 0"},
    {2, &refreshRate, u"72", u"debug.oculus.refreshRate 72"},
    {3, &refreshRate, u"90", u"debug.oculus.refreshRate 90"},
    {9, &fullRateCapture, Designed(u"On"), u"debug.oculus.fullRateCapture 1"},
    {10, &fullRateCapture, Designed(u"Off"), u"debug.oculus.fullRateCapture 0"},
    {12, &captureSize, u"480p", {u"debug.oculus.capture.width 640", u"debug.oculus.capture.height 480"}},
    {11, &captureSize, u"720p", {u"debug.oculus.capture.width 1280", u"debug.oculus.capture.height 720"}},
    {13, &captureSize, u"1080p", {u"debug.oculus.capture.width 1920", u"debug.oculus.capture.height 1080"}},
    {4, &foveation, u"0", u"debug.oculus.foveation.level 0"},
    {5, &foveation, u"1", u"debug.oculus.foveation.level 1"},
    {6, &foveation, u"2", u"debug.oculus.foveation.level 2"},
    {7, &foveation, u"3", u"debug.oculus.foveation.level 3"},
    {8, &foveation, u"4", u"debug.oculus.foveation.level 4"},
    {18, &textureSize, u"512", {u"debug.oculus.textureWidth 512", u"debug.oculus.textureHeight 512"}},
    {17, &textureSize, u"768", {u"debug.oculus.textureWidth 768", u"debug.oculus.textureHeight 768"}},
    {16, &textureSize, u"1024", {u"debug.oculus.textureWidth 1024", u"debug.oculus.textureHeight 1024"}},
    {15, &textureSize, u"1280", {u"debug.oculus.textureWidth 1280", u"debug.oculus.textureHeight 1280"}},
    {14, &textureSize, u"1536", {u"debug.oculus.textureWidth 1536", u"debug.oculus.textureHeight 1536"}},
    {19, &textureSize, u"2048", {u"debug.oculus.textureWidth 2048", u"debug.oculus.textureHeight 2048"}},
    {20, &textureSize, u"2560", {u"debug.oculus.textureWidth 2560", u"debug.oculus.textureHeight 2560"}},
    {21, &textureSize, u"3072", {u"debug.oculus.textureWidth 3072", u"debug.oculus.textureHeight 3072"}},
    {22, &reboot, Designed(u"Start"), PanelPress::reboot()},
};

// Whether each index from 0 has exactly one row, and no frame has more buttons than fit.
constexpr bool isWellFormed() {
  constexpr int mostInAFrame = 8;
  for (int Index = 0; Index < std::ssize(buttons); ++Index) {
    if (std::ranges::count(buttons, Index, &PanelButton::Index) != 1) return false;
    if (std::ranges::count(buttons, buttons[Index].frame, &PanelButton::frame) > mostInAFrame) return false;
  }
  return true;
}
static_assert(isWellFormed(), "an index twice or left out, or a frame that is too full");

}  // namespace

std::span<const PanelButton> panelButtons() {
  return buttons;
}

}  // namespace orvanta
