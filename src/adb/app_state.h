#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

#include "adb/storage.h"

namespace orvanta {

/// A file on the device.
struct DeviceFile {
  QString path;
  qint64 size = 0;  ///< bytes
  qint64 time = 0;  ///< of the last change, in seconds since 1970
};

/// What a headset has of one app, as far as a desktop can read it.
struct AppState {
  bool whole = false;  ///< the reply is complete
  QString build;       ///< empty when it is not installed
  QString version;
  QList<DeviceFile> packageFiles;  ///< the base and its splits; none when it is not installed
  QList<DeviceFile> expansionFiles;
  QList<DeviceFile> data;
  QStringList folders;              ///< all that lie below the app's two folders
  std::optional<StorageRoom> room;  ///< on the shared storage
  QStringList complaints;           ///< what the device's tools could not read

  qint64 bytes() const;
};

/// Reads the reply to `appStateLine`:
///     F 129206570 1611234567 /data/app/com.example-1/base.apk
///     F 5 1611234567 /sdcard/Android/obb/com.example/main.1.com.example.obb
///     /sdcard/Android/data/com.example/files
///     versionCode=83 minSdk=23 targetSdk=28
///     versionName=1.2
///     Filesystem     1K-blocks     Used Available Use% Mounted on
///     /dev/fuse      114294764 12884901 101409863  12% /storage/emulated
///     end
AppState appStateIn(const QString& reply, const QString& package);

/// A headset: product name and serial number.
struct HeadsetIdentity {
  QString model;
  QString serial;  ///< empty when none has answered

  /// "Quest 3 2G0YC1ZF7T0D3K"
  QString name() const { return model.isEmpty() ? serial : model + u' ' + serial; }
};

/// Reads the reply to `headsetLine`, two lines.
HeadsetIdentity headsetIn(const QString& reply);

}  // namespace orvanta
