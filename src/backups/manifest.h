#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <variant>

#include "text/bilingual.h"

namespace orvanta {

/// A file of a backup.
struct BackupFile {
  /// Below the backup's folder, with slashes: "apk/base.apk", "obb/<package>/main.obb",
  /// "data/<package>/save".
  QString path;
  qint64 size = 0;    ///< bytes
  QByteArray sha256;  ///< in hexadecimal
  qint64 time = 0;    ///< of the last change on the headset, in seconds since 1970
  /// The same with the names that it has on the headset, where they are others; else empty.
  QString onHeadset = {};

  /// The path with the headset's names, which begins with its kind.
  const QString& known() const { return onHeadset.isEmpty() ? path : onHeadset; }
  /// What it is: "apk", "obb" or "data".
  QString part() const { return known().section(u'/', 0, 0); }
  /// Where it belongs on the headset; empty for a package file, which the headset puts in place itself.
  QString devicePath() const;
};

/// What a backup says of itself in its file `backup.json`.
struct BackupManifest {
  QString package;
  QString label;
  QString version;
  QString build;
  QDateTime date;
  QString headsetModel;
  QString headsetSerial;
  QList<BackupFile> files;
  /// Folders of the headset that have nothing in them, as `BackupFile::known` names files. On the desktop
  /// there are none for them.
  QStringList emptyFolders;
  /// What the headset did not let be read, in its own words.
  QStringList unreadable;

  /// What to call the app.
  const QString& name() const { return label.isEmpty() ? package : label; }
  qint64 bytes(const QString& part = {}) const;
  QList<BackupFile> filesOf(const QString& part) const;
};

/// A folder with a file of this name is a whole backup: it is written when all the others are there.
inline const QString manifestName = QStringLiteral("backup.json");
/// The same while the backup is under way, with the files that are there already.
inline const QString recordName = QStringLiteral("backup.json.partial");

QByteArray manifestText(const BackupManifest& manifest);

/// The manifest in `text`, or why there is none: cut off, of a later format, of wrong types, with names that
/// lead out of the backup's folder or of the app's folders on the headset.
std::variant<BackupManifest, Bilingual> readManifest(const QByteArray& text);

/// Writes the manifest into `folder`, in one piece and down to the disk. False when that is not possible.
bool writeManifest(const QString& folder, const BackupManifest& manifest);
/// The same for the record of what has come so far, which may be lost with the machine: only time is lost
/// then.
bool writeRecord(const QString& folder, const BackupManifest& manifest);
/// Reads the file `name` in `folder`.
std::variant<BackupManifest, Bilingual> manifestIn(const QString& folder, const QString& name);

}  // namespace orvanta
