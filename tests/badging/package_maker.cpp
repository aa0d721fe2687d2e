#include "package_maker.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <zip.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtEndian>
#include <algorithm>

#include "sample_package.h"

extern char** environ;

namespace orvanta::test {

using namespace Qt::StringLiterals;

bool writeFile(const QString& file, const QByteArray& content) {
  QDir().mkpath(QFileInfo(file).path());
  QFile target(file);
  return target.open(QIODevice::WriteOnly) && target.write(content) == content.size();
}

QByteArray readFile(const QString& file) {
  QFile source(file);
  return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}

QString makePackage(const QString& file, const QByteArray& manifest, const PackageParts& resources,
                    const QStringList& moreArguments) {
  QTemporaryDir folder;
  if (!writeFile(folder.filePath(u"AndroidManifest.xml"_s), manifest)) return u"no room for the manifest"_s;
  QDir(folder.path()).mkdir(u"res"_s);
  for (auto part = resources.begin(); part != resources.end(); ++part) {
    if (!writeFile(folder.filePath(u"res/"_s + part.key()), part.value()))
      return u"no room for the resources"_s;
  }
  QProcess aapt;
  aapt.start(u"aapt"_s,
             QStringList{u"package"_s, u"-f"_s, u"-M"_s, folder.filePath(u"AndroidManifest.xml"_s), u"-S"_s,
                         folder.filePath(u"res"_s), u"-I"_s, frameworkResources(), u"-F"_s, file} +
                 moreArguments);
  if (!aapt.waitForFinished() || aapt.exitCode() != 0) return QString::fromUtf8(aapt.readAllStandardError());
  return {};
}

QByteArray readPart(const QString& file, const QString& part) {
  zip_t* archive = zip_open(QFile::encodeName(file).constData(), ZIP_RDONLY, nullptr);
  if (!archive) return {};
  QByteArray content;
  zip_stat_t status;
  zip_file_t* entry = zip_fopen(archive, part.toUtf8().constData(), 0);
  if (entry && zip_stat(archive, part.toUtf8().constData(), 0, &status) == 0) {
    content.resize(static_cast<qsizetype>(status.size));
    if (zip_fread(entry, content.data(), status.size) != static_cast<zip_int64_t>(status.size))
      content.clear();
  }
  if (entry) zip_fclose(entry);
  zip_discard(archive);
  return content;
}

bool writeParts(const QString& file, const PackageParts& parts, bool deflated) {
  zip_t* archive = zip_open(QFile::encodeName(file).constData(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
  if (!archive) return false;
  bool added = true;
  for (auto part = parts.begin(); part != parts.end(); ++part) {
    zip_source_t* source = zip_source_buffer(archive, part.value().constData(),
                                             static_cast<zip_uint64_t>(part.value().size()), 0);
    const zip_int64_t index =
        zip_file_add(archive, part.key().toUtf8().constData(), source, ZIP_FL_ENC_UTF_8);
    added = added && index >= 0 &&
            zip_set_file_compression(archive, static_cast<zip_uint64_t>(index),
                                     deflated ? ZIP_CM_DEFLATE : ZIP_CM_STORE, 0) == 0;
  }
  return zip_close(archive) == 0 && added;
}

QByteArray Badging::text() const {
  return "exit " + QByteArray::number(exitCode) + "\n" + lines.join('\n') + "\n" + errors.join('\n');
}

qsizetype Badging::count(const QByteArray& start) const {
  return std::count_if(lines.begin(), lines.end(),
                       [&start](const QByteArray& line) { return line.startsWith(start); });
}

QStringList theirs() {
  return {u"aapt"_s};
}

QStringList ours() {
  return {QStringLiteral(BADGING_PROGRAM)};
}

Badging badging(const QStringList& program, const QString& file) {
  QTemporaryDir folder;
  const QByteArray outputFile = QFile::encodeName(folder.filePath(u"output"_s));
  const QByteArray errorFile = QFile::encodeName(folder.filePath(u"errors"_s));
  QByteArrayList words;
  for (const QString& word : program + QStringList{u"d"_s, u"badging"_s, file})
    words << QFile::encodeName(word);
  QList<char*> arguments;
  for (QByteArray& word : words) arguments << word.data();
  arguments << nullptr;

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, outputFile.constData(), O_WRONLY | O_CREAT, 0600);
  posix_spawn_file_actions_addopen(&actions, 2, errorFile.constData(), O_WRONLY | O_CREAT, 0600);
  pid_t child = 0;
  Badging result;
  if (posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ) == 0) {
    int status = 0;
    if (waitpid(child, &status, 0) == child && WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  }
  posix_spawn_file_actions_destroy(&actions);

  static const QRegularExpression read(
      u"^(package|sdkVersion|targetSdkVersion|uses-permission.*|uses-implied-permission|optional-permission|"
      u"feature-group|  uses-feature.*|  "
      u"uses-implied-feature.*|application-label.*|application-icon.*|application|"
      u"launchable-activity):"_s);
  static const QRegularExpression log(u"^\\S+ [VDIWEF] \\d\\d-\\d\\d "_s);
  for (const QByteArray& line : readFile(QFile::decodeName(outputFile)).split('\n')) {
    if (read.match(QString::fromUtf8(line)).hasMatch()) result.lines << line;
  }
  for (const QByteArray& line : readFile(QFile::decodeName(errorFile)).split('\n')) {
    if (!line.isEmpty() && !log.match(QString::fromUtf8(line)).hasMatch()) result.errors << line;
  }
  return result;
}

QByteArray manifestWith(const QByteArray& body, const QByteArray& root, const QByteArray& sdk) {
  return "<manifest xmlns:android=\"http://schemas.android.com/apk/res/android\" "
         "package=\"org.example.app\" " +
         root + ">" + sdk + body + "</manifest>";
}

QByteArray labelManifest(quint32 labelId) {
  QTemporaryDir folder;
  const QString file = folder.filePath(u"label.apk"_s);
  const PackageParts parts = {
      {u"values/s.xml"_s,
       "<resources><string name=\"app\">x</string><string name=\"icon\">y</string></resources>"}};
  const QByteArray text =
      manifestWith("<application android:label=\"@string/app\" android:icon=\"@string/icon\"/>");
  if (!makePackage(file, text, parts).isEmpty()) return {};
  QByteArray manifest = readPart(file, u"AndroidManifest.xml"_s);
  QByteArray wanted(4, '\0');
  qToLittleEndian(labelId, wanted.data());
  QByteArray usual(4, '\0');
  qToLittleEndian(kLabelId, usual.data());
  return manifest.replace(usual, wanted);
}

}  // namespace orvanta::test
