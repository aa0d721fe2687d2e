#include "sample_package.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

namespace orvanta {

using namespace Qt::StringLiterals;

namespace {

struct Density {
  const char* folder;
  int size;
};
constexpr Density kDensities[] = {{"mipmap-mdpi", 48}, {"mipmap-xhdpi", 96}, {"mipmap-xxxhdpi", 192}};

bool writeFile(const QString& path, const QByteArray& content) {
  QDir().mkpath(QFileInfo(path).path());
  QFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

/// Escapes `text` for a string resource: both XML and aapt have special characters.
QByteArray resourceText(QString text) {
  text.replace(u'\\', u"\\\\"_s).replace(u'\'', u"\\'"_s).replace(u'"', u"\\\""_s);
  if (text.startsWith(u'@') || text.startsWith(u'?')) text.prepend(u'\\');
  return text.toHtmlEscaped().toUtf8();
}

QByteArray stringsFile(const QString& label) {
  return "<resources><string name=\"app_name\">" + resourceText(label) + "</string></resources>\n";
}

/// A disc whose colour follows from the package's name, so that neighbours in a list differ.
QByteArray drawnIcon(const QString& package, int size) {
  QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor::fromHsv(qChecksum(package.toUtf8()) % 360, 170, 210));
  painter.drawEllipse(QRectF(0, 0, size, size));
  painter.setBrush(Qt::white);
  painter.drawRoundedRect(QRectF(size * 0.2, size * 0.35, size * 0.6, size * 0.3), size * 0.1, size * 0.1);
  painter.end();
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "PNG");
  return png;
}

QString attribute(const QString& value) {
  return value.toHtmlEscaped();
}

QString manifest(const SamplePackage& package) {
  QString text =
      u"<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
      "<manifest xmlns:android=\"http://schemas.android.com/apk/res/android\" package=\"%1\" "
      "android:versionCode=\"%2\" android:versionName=\"%3\"%4%5>\n"_s.arg(
          attribute(package.package), QString::number(package.versionCode), attribute(package.versionName),
          package.split.isEmpty() ? QString() : u" split=\"%1\""_s.arg(attribute(package.split)),
          package.splitRequired ? u" android:isSplitRequired=\"true\""_s : QString());
  text += u"<uses-sdk android:minSdkVersion=\"%1\" android:targetSdkVersion=\"%2\"/>\n"_s.arg(package.minSdk)
              .arg(package.targetSdk);
  for (const QString& name : package.permissions) {
    text += u"<uses-permission android:name=\"%1\"/>\n"_s.arg(attribute(name));
  }
  for (const QString& name : package.features) {
    text += u"<uses-feature android:name=\"%1\" android:required=\"true\"/>\n"_s.arg(attribute(name));
  }
  if (!package.split.isEmpty()) return text + "<application android:hasCode=\"false\"/>\n</manifest>\n"_L1;
  const bool hasIcon = package.icon || !package.iconPng.isEmpty();
  text += u"<application android:label=\"@string/app_name\"%1%2>\n"_s.arg(
      hasIcon ? u" android:icon=\"@mipmap/ic_launcher\""_s : QString(),
      package.testOnly ? u" android:testOnly=\"true\""_s : QString());
  if (package.launchable) {
    text +=
        u"<activity android:name=\".MainActivity\"><intent-filter>"
        "<action android:name=\"android.intent.action.MAIN\"/>"
        "<category android:name=\"android.intent.category.LAUNCHER\"/></intent-filter></activity>\n"_s;
  }
  return text + "</application>\n</manifest>\n"_L1;
}

QString runAapt(const QString& folder, const QStringList& arguments) {
  QProcess aapt;
  aapt.setWorkingDirectory(folder);
  aapt.setProcessChannelMode(QProcess::MergedChannels);
  aapt.start(u"aapt"_s, arguments);
  if (!aapt.waitForStarted()) return u"aapt is not installed (Debian: apt-get install aapt)"_s;
  aapt.waitForFinished(-1);
  if (aapt.exitStatus() == QProcess::NormalExit && aapt.exitCode() == 0) return {};
  return "aapt failed: "_L1 + QString::fromUtf8(aapt.readAll()).trimmed();
}

QByteArray randomBytes(qint64 size) {
  QByteArray bytes((size + 3) / 4 * 4, Qt::Uninitialized);
  QRandomGenerator generator(1);
  generator.fillRange(reinterpret_cast<quint32*>(bytes.data()), bytes.size() / 4);
  bytes.truncate(size);
  return bytes;
}

}  // namespace

QString frameworkResources() {
  const QString debian = u"/usr/share/android-framework-res/framework-res.apk"_s;
  if (QFileInfo::exists(debian)) return debian;
  for (const char* variable : {"ANDROID_HOME", "ANDROID_SDK_ROOT"}) {
    const QString sdk = qEnvironmentVariable(variable);
    if (sdk.isEmpty()) continue;
    const QDir platforms(sdk + "/platforms"_L1);
    const QStringList names =
        platforms.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::Reversed);
    for (const QString& name : names) {
      const QString jar = platforms.filePath(name + "/android.jar"_L1);
      if (QFileInfo::exists(jar)) return jar;
    }
  }
  return {};
}

QString SamplePackage::write(const QString& file) const {
  const QString framework = frameworkResources();
  if (framework.isEmpty()) {
    return u"aapt needs the framework's resources (Debian: apt-get install android-framework-res)"_s;
  }
  const QTemporaryDir work;
  if (!work.isValid()) return work.errorString();
  const QString target = QFileInfo(file).absoluteFilePath();
  QDir().mkpath(QFileInfo(target).path());
  writeFile(work.filePath(u"AndroidManifest.xml"_s), manifest(*this).toUtf8());
  QDir(work.path()).mkpath(u"res"_s);
  QStringList arguments = {u"package"_s, u"-f"_s,   u"-M"_s, u"AndroidManifest.xml"_s,
                           u"-I"_s,      framework, u"-F"_s, target};
  if (split.isEmpty()) {
    writeFile(work.filePath(u"res/values/strings.xml"_s), stringsFile(label));
    for (auto it = localizedLabels.begin(); it != localizedLabels.end(); ++it) {
      writeFile(work.filePath(u"res/values-%1/strings.xml"_s.arg(it.key())), stringsFile(it.value()));
    }
    for (const Density& density : kDensities) {
      if (!icon && iconPng.isEmpty()) break;
      writeFile(work.filePath(u"res/%1/ic_launcher.png"_s.arg(QLatin1StringView(density.folder))),
                iconPng.isEmpty() ? drawnIcon(package, density.size) : iconPng);
    }
    arguments << u"-S"_s << u"res"_s;
  }
  if (const QString problem = runAapt(work.path(), arguments); !problem.isEmpty()) return problem;

  // aapt stores an added file under the path it was given, so those are the paths inside the package.
  QMap<QString, QByteArray> files = extraFiles;
  for (const QString& abi : nativeCode) files.insert(u"lib/%1/libmain.so"_s.arg(abi), QByteArray(64, '\x7f'));
  if (paddingBytes > 0) files.insert(u"assets/padding.bin"_s, randomBytes(paddingBytes));
  if (files.isEmpty()) return {};
  for (auto it = files.begin(); it != files.end(); ++it) {
    if (!writeFile(work.filePath(it.key()), it.value())) return "cannot write "_L1 + it.key();
  }
  return runAapt(work.path(), QStringList{u"add"_s, u"-0"_s, u"bin"_s, target} + files.keys());
}

}  // namespace orvanta
