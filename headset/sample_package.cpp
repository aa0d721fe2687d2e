#include "sample_package.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <memory>

#include <zip.h>

#include "package_parts.h"

namespace orvanta {

using namespace Qt::StringLiterals;

namespace {

struct Density {
  const char* name;
  int dots;  // an inch
  int size;
};
constexpr Density kDensities[] = {{"mdpi", 160, 48}, {"xhdpi", 320, 96}, {"xxxhdpi", 640, 192}};
constexpr ResourceId kIcon = {0x7f010000};
constexpr ResourceId kLabel = {0x7f020000};

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

ManifestElement named(const QString& element, const QString& name,
                      const QList<ManifestElement>& children = {}) {
  return {element, {{u"name"_s, 0x01010003, name}}, children};
}

ManifestElement application(const SamplePackage& package) {
  ManifestElement element = {u"application"_s};
  if (!package.split.isEmpty()) {
    element.attributes << ManifestAttribute{u"hasCode"_s, 0x0101000c, false};
    return element;
  }
  element.attributes << ManifestAttribute{u"label"_s, 0x01010001, kLabel};
  if (package.hasIcon()) element.attributes << ManifestAttribute{u"icon"_s, 0x01010002, kIcon};
  if (package.testOnly) element.attributes << ManifestAttribute{u"testOnly"_s, 0x01010272, true};
  if (package.launchable) {
    element.children << named(u"activity"_s, package.package + ".MainActivity"_L1,
                              {{u"intent-filter"_s,
                                {},
                                {named(u"action"_s, u"android.intent.action.MAIN"_s),
                                 named(u"category"_s, u"android.intent.category.LAUNCHER"_s)}}});
  }
  return element;
}

QByteArray manifest(const SamplePackage& package) {
  ManifestElement root = {u"manifest"_s};
  root.attributes << ManifestAttribute{u"versionCode"_s, 0x0101021b, static_cast<qint32>(package.versionCode)}
                  << ManifestAttribute{u"versionName"_s, 0x0101021c, package.versionName}
                  << ManifestAttribute{u"package"_s, 0, package.package};
  if (package.splitRequired) root.attributes << ManifestAttribute{u"isSplitRequired"_s, 0x01010591, true};
  if (!package.split.isEmpty()) root.attributes << ManifestAttribute{u"split"_s, 0, package.split};
  root.children << ManifestElement{u"uses-sdk"_s,
                                   {{u"minSdkVersion"_s, 0x0101020c, package.minSdk},
                                    {u"targetSdkVersion"_s, 0x01010270, package.targetSdk}}};
  for (const QString& name : package.permissions) root.children << named(u"uses-permission"_s, name);
  for (const QString& name : package.features) {
    root.children << named(u"uses-feature"_s, name);
    root.children.last().attributes << ManifestAttribute{u"required"_s, 0x0101028e, true};
  }
  root.children << application(package);
  return binaryManifest(root);
}

QString iconPath(const Density& density) {
  return u"res/mipmap-%1-v4/ic_launcher.png"_s.arg(QLatin1StringView(density.name));
}

QByteArray resources(const SamplePackage& package) {
  Resource icon = {u"mipmap"_s, u"ic_launcher"_s, {}};
  for (const Density& density : kDensities) {
    if (package.hasIcon())
      icon.versions << ResourceVersion{.text = iconPath(density), .density = density.dots};
  }
  Resource label = {u"string"_s, u"app_name"_s, {{package.label}}};
  for (auto it = package.localizedLabels.begin(); it != package.localizedLabels.end(); ++it)
    label.versions << ResourceVersion{it.value(), it.key()};
  return resourceTable(package.package, {icon, label});
}

/// A zip archive that is being written, and what goes into it.
class Archive {
 public:
  explicit Archive(const QString& file)
      : m_archive(zip_open(file.toUtf8().constData(), ZIP_CREATE | ZIP_TRUNCATE, nullptr)) {}
  Archive(const Archive&) = delete;
  Archive& operator=(const Archive&) = delete;
  ~Archive() {
    if (m_archive) zip_discard(m_archive);
  }

  bool add(const QString& name, const QByteArray& content, bool deflated) {
    if (!m_archive) return false;
    m_contents.append(content);  // it is read when the archive is closed
    const QByteArray& kept = m_contents.last();
    zip_source_t* source =
        zip_source_buffer(m_archive, kept.constData(), static_cast<zip_uint64_t>(kept.size()), 0);
    const zip_int64_t index = zip_file_add(m_archive, name.toUtf8().constData(), source, ZIP_FL_ENC_UTF_8);
    return index >= 0 && zip_set_file_compression(m_archive, static_cast<zip_uint64_t>(index),
                                                  deflated ? ZIP_CM_DEFLATE : ZIP_CM_STORE, 0) == 0;
  }

  bool close() {
    const bool closed = m_archive && zip_close(m_archive) == 0;
    if (closed) m_archive = nullptr;
    return closed;
  }

 private:
  zip_t* m_archive;
  QByteArrayList m_contents;
};

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

bool writeArchive(const QString& file, const QMap<QString, QByteArray>& contents, bool deflated) {
  Archive archive(file);
  for (auto it = contents.begin(); it != contents.end(); ++it)
    if (!archive.add(it.key(), it.value(), deflated)) return false;
  return archive.close();
}

QString SamplePackage::write(const QString& file) const {
  QDir().mkpath(QFileInfo(file).absolutePath());
  Archive archive(QFileInfo(file).absoluteFilePath());
  bool added = archive.add(u"AndroidManifest.xml"_s, manifest(*this), true);
  if (split.isEmpty()) {
    added = added && archive.add(u"resources.arsc"_s, resources(*this), false);
    for (const Density& density : kDensities) {
      if (hasIcon())
        added = added && archive.add(iconPath(density),
                                     iconPng.isEmpty() ? drawnIcon(package, density.size) : iconPng, false);
    }
  }
  QMap<QString, QByteArray> files = extraFiles;
  for (const QString& abi : nativeCode) files.insert(u"lib/%1/libmain.so"_s.arg(abi), QByteArray(64, '\x7f'));
  if (paddingBytes > 0) files.insert(u"assets/padding.bin"_s, randomBytes(paddingBytes));
  for (auto it = files.begin(); it != files.end(); ++it)
    added = added && archive.add(it.key(), it.value(), !it.key().endsWith(".bin"_L1));
  return added && archive.close() ? QString() : "cannot write "_L1 + file;
}

}  // namespace orvanta
