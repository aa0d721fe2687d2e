#include "device/presses.h"

#include <array>

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

struct Press {
  const char16_t* first;
  const char16_t* second = nullptr;
};

constexpr int reboot = 22;

// Each row is a property and its value, as the device's shell takes them. By index, not as on the screen.
constexpr std::array<Press, reboot> presses{{
    // The property pauses the guardian: "On" sends 1.
    {u"debug.oculus.guardian_pause 1"},
    {u"debug.oculus.guardian_pause 0"},
    {u"debug.oculus.refreshRate 72"},
    {u"debug.oculus.refreshRate 90"},
    {u"debug.oculus.foveation.level 0"},
    {u"debug.oculus.foveation.level 1"},
    {u"debug.oculus.foveation.level 2"},
    {u"debug.oculus.foveation.level 3"},
    {u"debug.oculus.foveation.level 4"},
    {u"debug.oculus.fullRateCapture 1"},
    {u"debug.oculus.fullRateCapture 0"},
    {u"debug.oculus.capture.width 1280", u"debug.oculus.capture.height 720"},
    {u"debug.oculus.capture.width 640", u"debug.oculus.capture.height 480"},
    {u"debug.oculus.capture.width 1920", u"debug.oculus.capture.height 1080"},
    {u"debug.oculus.textureWidth 1536", u"debug.oculus.textureHeight 1536"},
    {u"debug.oculus.textureWidth 1280", u"debug.oculus.textureHeight 1280"},
    {u"debug.oculus.textureWidth 1024", u"debug.oculus.textureHeight 1024"},
    {u"debug.oculus.textureWidth 768", u"debug.oculus.textureHeight 768"},
    {u"debug.oculus.textureWidth 512", u"debug.oculus.textureHeight 512"},
    {u"debug.oculus.textureWidth 2048", u"debug.oculus.textureHeight 2048"},
    {u"debug.oculus.textureWidth 2560", u"debug.oculus.textureHeight 2560"},
    {u"debug.oculus.textureWidth 3072", u"debug.oculus.textureHeight 3072"},
}};
static_assert(presses.size() + 1 == pressCount);

QString propertyLine(const Host& host, const char16_t* property) {
  return AdbPrefix(host) + u" shell setprop "_s + QString::fromUtf16(property);
}

}  // namespace

QStringList pressLines(const Host& host, int Index) {
  if (Index == reboot) return {AdbPrefix(host) + u" reboot"_s};
  if (Index < 0 || Index > reboot) return {};
  const Press& press = presses[static_cast<size_t>(Index)];
  QStringList lines{propertyLine(host, press.first)};
  if (press.second != nullptr) lines += propertyLine(host, press.second);
  return lines;
}

QString mtpLine(const Host& host) {
  return AdbPrefix(host) + u" shell svc usb setFunctions mtp true"_s;
}

QString freeLine(const Host& host, const QString& text) {
  return AdbPrefix(host) + u' ' + text;
}

}  // namespace orvanta
