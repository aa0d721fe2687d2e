#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include "text/bilingual.h"

namespace orvanta {

/// One file in a bundle.
struct BundleEntry {
  quint64 index = 0;
  QString name;
  qint64 bytes = 0;  ///< unpacked, as the archive claims
  bool encrypted = false;
};

/// A bundle: an archive of a base package, its splits, and sometimes expansion files and a description.
struct Bundle {
  QString package;  ///< this and the next three as the description has them; else empty
  QString label;
  QString version;
  QString build;
  QByteArray icon;  ///< a picture's file; may be empty
  QList<BundleEntry> entries;
  Bilingual problem = {};  ///< why it cannot be used; else empty
};

/// Reads the directory of the archive and its small description; unpacks nothing else.
Bundle readBundle(const QString& path);

/// What the headset says about itself that decides which splits fit.
struct HeadsetTraits {
  QStringList processors;  ///< by preference
  int density = 0;         ///< dots an inch; 0 where it does not say
  QStringList languages;   ///< two or three small letters each

  /// Reads the reply to traitsLine().
  static HeadsetTraits in(const QString& reply);
  bool known() const { return !processors.isEmpty(); }
};

/// What of a bundle goes to a headset.
struct BundleChoice {
  struct Part {
    BundleEntry entry;
    QString fileName;  ///< fit for any folder
  };
  QList<Part> packages;  ///< the base first
  QList<Part> expansionFiles;
  Bilingual problem = {};

  qint64 bytes() const;
};

BundleChoice chooseParts(const QList<BundleEntry>& entries, const HeadsetTraits& headset);

}  // namespace orvanta
