#pragma once

#include <QString>
#include <QStringList>
#include <array>

namespace orvanta {

/// What each press of the panel sets on the headset, by index, in the order of setting.
inline QStringList settingsOfPress(int Index) {
  static const std::array<const char*, 22> table{"guardian_pause 1",
                                                 "guardian_pause 0",
                                                 "refreshRate 72",
                                                 "refreshRate 90",
                                                 "foveation.level 0",
                                                 "foveation.level 1",
                                                 "foveation.level 2",
                                                 "foveation.level 3",
                                                 "foveation.level 4",
                                                 "fullRateCapture 1",
                                                 "fullRateCapture 0",
                                                 "capture.width 1280;capture.height 720",
                                                 "capture.width 640;capture.height 480",
                                                 "capture.width 1920;capture.height 1080",
                                                 "textureWidth 1536;textureHeight 1536",
                                                 "textureWidth 1280;textureHeight 1280",
                                                 "textureWidth 1024;textureHeight 1024",
                                                 "textureWidth 768;textureHeight 768",
                                                 "textureWidth 512;textureHeight 512",
                                                 "textureWidth 2048;textureHeight 2048",
                                                 "textureWidth 2560;textureHeight 2560",
                                                 "textureWidth 3072;textureHeight 3072"};
  QStringList settings = QString::fromLatin1(table.at(static_cast<size_t>(Index))).split(u';');
  for (QString& setting : settings) setting.prepend(QStringLiteral("debug.oculus."));
  return settings;
}

}  // namespace orvanta
