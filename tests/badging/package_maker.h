#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include "table_maker.h"

namespace orvanta::test {

/// The parts of a package, by their path in it.
using PackageParts = QMap<QString, QByteArray>;

/// Has the real aapt make a package from a manifest and the resource files (by path, such as
/// "values-de/s.xml"). On failure the reason, else an empty text.
[[nodiscard]] QString makePackage(const QString& file, const QByteArray& manifest,
                                  const PackageParts& resources, const QStringList& moreArguments = {});

/// One part of a package; empty when it is not there.
QByteArray readPart(const QString& file, const QString& part);

/// Writes a package from parts, deflated or as they are. False on failure.
bool writeParts(const QString& file, const PackageParts& parts, bool deflated = false);

bool writeFile(const QString& file, const QByteArray& content);
QByteArray readFile(const QString& file);

/// What a program had to say about a package, without what it is not compared by: lines that our reader
/// leaves out, and aapt's log with its time stamps.
struct Badging {
  int exitCode = -1;
  QByteArrayList lines;
  QByteArrayList errors;

  QByteArray text() const;
  /// How many lines begin like this.
  qsizetype count(const QByteArray& start) const;
};

/// The real aapt, and the program that is tested.
QStringList theirs();
QStringList ours();

/// Runs `program d badging file`; `program` may be an emulator followed by a program.
Badging badging(const QStringList& program, const QString& file);

/// The text of a small manifest around `body`.
QByteArray manifestWith(
    const QByteArray& body, const QByteArray& root = "android:versionCode=\"7\"",
    const QByteArray& sdk = "<uses-sdk android:minSdkVersion=\"23\" android:targetSdkVersion=\"29\"/>");

/// A binary manifest whose label has the given id, and whose icon is where makeTable() puts it.
QByteArray labelManifest(quint32 labelId = kLabelId);

}  // namespace orvanta::test

/// Both programs on one file: the same lines, errors and exit code.
#define COMPARE_WITH_AAPT(file)                                        \
  QCOMPARE(orvanta::test::badging(orvanta::test::ours(), file).text(), \
           orvanta::test::badging(orvanta::test::theirs(), file).text())
