#include "package_maker.h"

#include <zip.h>

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include "sample_package.h"
#include "support/files.h"

namespace orvanta::test {

using namespace Qt::StringLiterals;

QString makePackage(const QString& file, const QByteArray& manifest, const PackageParts& resources,
                    const QStringList& moreArguments) {
  const QTemporaryDir folder;
  const QString manifestFile = folder.filePath(u"AndroidManifest.xml"_s);
  bool written = writeFile(manifestFile, manifest);
  for (auto part = resources.begin(); part != resources.end(); ++part)
    written = writeFile(folder.filePath(u"res/"_s + part.key()), part.value()) && written;
  if (!written) return u"no room for the package's parts"_s;
  QProcess aapt;
  aapt.start(u"aapt"_s, QStringList{u"package"_s, u"-f"_s, u"-M"_s, manifestFile, u"-S"_s,
                                    folder.filePath(u"res"_s), u"-I"_s, frameworkResources(), u"-F"_s, file} +
                            moreArguments);
  if (!aapt.waitForFinished() || aapt.exitCode() != 0) return QString::fromUtf8(aapt.readAllStandardError());
  return {};
}

QByteArray Badging::text() const {
  return "exit " + QByteArray::number(exitCode) + "\n" + lines.join('\n') + "\n" + errors.join('\n');
}

QString ours() {
  return QStringLiteral(BADGING_PROGRAM);
}

Badging badging(const QString& program, const QString& file, const QStringList& arguments) {
  QProcess process;
  process.start(program, arguments + QStringList{u"d"_s, u"badging"_s, file});
  Badging result;
  if (process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit)
    result.exitCode = process.exitCode();

  static const QRegularExpression read(
      u"^(package|sdkVersion|targetSdkVersion|uses-permission.*|uses-implied-permission|optional-permission|"
      u"feature-group|  uses-feature.*|  uses-implied-feature.*|application-label.*|application-icon.*|"
      u"application|launchable-activity):"_s);
  static const QRegularExpression log(u"^\\S+ [VDIWEF] \\d\\d-\\d\\d |^$"_s);
  for (const QByteArray& line : process.readAllStandardOutput().split('\n')) {
    if (read.match(QString::fromUtf8(line)).hasMatch()) result.lines << line;
  }
  for (const QByteArray& line : process.readAllStandardError().split('\n')) {
    if (!log.match(QString::fromUtf8(line)).hasMatch()) result.errors << line;
  }
  return result;
}

QByteArray manifestWith(const QByteArray& body, const QByteArray& root, const QByteArray& sdk) {
  return "<manifest xmlns:android=\"http://schemas.android.com/apk/res/android\" "
         "package=\"org.example.app\" " +
         root + ">" + sdk + body + "</manifest>";
}

QByteArray labelManifest() {
  const QTemporaryDir folder;
  const QString file = folder.filePath(u"label.apk"_s);
  const QByteArray strings =
      "<resources><string name=\"app\">x</string><string name=\"icon\">y</string></resources>";
  const QByteArray text =
      manifestWith("<application android:label=\"@string/app\" android:icon=\"@string/icon\"/>");
  if (!makePackage(file, text, {{u"values/s.xml"_s, strings}}).isEmpty()) return {};
  zip_t* archive = zip_open(QFile::encodeName(file).constData(), ZIP_RDONLY, nullptr);
  zip_file_t* entry = zip_fopen(archive, "AndroidManifest.xml", 0);
  QByteArray manifest(1 << 16, '\0');
  manifest.truncate(zip_fread(entry, manifest.data(), static_cast<zip_uint64_t>(manifest.size())));
  zip_fclose(entry);
  zip_discard(archive);
  return manifest;
}

}  // namespace orvanta::test
