#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

namespace orvanta::test {

/// The parts of a package, by their path in it.
using PackageParts = QMap<QString, QByteArray>;

/// Has the real aapt make a package from a manifest and the resource files (by path, such as
/// "values-de/s.xml"). On failure the reason, else an empty text.
[[nodiscard]] QString makePackage(const QString& file, const QByteArray& manifest,
                                  const PackageParts& resources, const QStringList& moreArguments = {});

/// How a resource table writes down where its entries are, and the entries themselves. aapt writes the first
/// only.
enum class TableForm { Plain, Sparse, Offset16, Compact };

/// One version of the label and of the icon (a path), for one configuration. An empty text is an absent
/// entry.
struct TableVersion {
  QByteArray language = {};  ///< two letters
  int density = 0;
  QString label = {};
  QString icon = {};
};

/// A resource table with the given versions. The label has the id 0x7f020000, the icon the next one.
QByteArray makeTable(const QList<TableVersion>& versions, TableForm form = TableForm::Plain);

/// A program's output about a package, without what is not compared: lines that our reader leaves out, and
/// aapt's log with its time stamps.
struct Badging {
  int exitCode = -1;
  QByteArrayList lines;
  QByteArrayList errors;

  QByteArray text() const;
  /// How many lines begin like this.
  qsizetype count(const QByteArray& start) const { return text().count('\n' + start); }
};

/// The program that is tested; the other one is "aapt".
QString ours();

/// Runs `program arguments d badging file`.
Badging badging(const QString& program, const QString& file, const QStringList& arguments = {});

/// The text of a small manifest around `body`.
QByteArray manifestWith(
    const QByteArray& body, const QByteArray& root = "android:versionCode=\"7\"",
    const QByteArray& sdk = "<uses-sdk android:minSdkVersion=\"23\" android:targetSdkVersion=\"29\"/>");

/// A binary manifest whose label and icon are where makeTable() puts them.
QByteArray labelManifest();

}  // namespace orvanta::test

/// Both programs on one file: the same lines, errors and exit code.
#define COMPARE_WITH_AAPT(file)                                        \
  QCOMPARE(orvanta::test::badging(orvanta::test::ours(), file).text(), \
           orvanta::test::badging(QStringLiteral("aapt"), file).text())
