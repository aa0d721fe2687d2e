#include "queue/bundle.h"

#include <zip.h>

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>
#include <memory>
#include <optional>

#include "apk/package_archive.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr zip_int64_t mostEntries = 20'000;
constexpr qint64 mostBytes = qint64{64} << 30;
constexpr qsizetype mostDescriptionBytes = 1 << 20;
constexpr qsizetype mostIconBytes = 16 << 20;
constexpr int usualDensity = 640;  // of a headset

struct Discard {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};

/// What a split is for, as its name tells.
struct Qualifier {
  enum class Kind { None, Processor, Density, Language, Texture } kind = Kind::None;
  QString value;
  int dots = 0;  // an inch, of a density
};

Qualifier qualifierOf(const QString& text) {
  static const QMap<QString, int> densities = {{u"ldpi"_s, 120},   {u"mdpi"_s, 160},  {u"tvdpi"_s, 213},
                                               {u"hdpi"_s, 240},   {u"xhdpi"_s, 320}, {u"xxhdpi"_s, 480},
                                               {u"xxxhdpi"_s, 640}};
  static const QStringList processors = {u"armeabi"_s, u"armeabi-v7a"_s, u"arm64-v8a"_s, u"x86"_s,
                                         u"x86-64"_s,  u"mips"_s,        u"mips64"_s,    u"riscv64"_s};
  static const QStringList textures = {u"astc"_s,  u"etc2"_s, u"etc1"_s, u"etc1-rgb8"_s, u"s3tc"_s, u"dxt1"_s,
                                       u"pvrtc"_s, u"atc"_s,  u"latc"_s, u"paletted"_s,  u"3dc"_s};
  static const QRegularExpression language(u"^([a-z]{2,3})(?:-r?[A-Za-z0-9]+)?$"_s);
  using Kind = Qualifier::Kind;
  const QString plain = QString(text).replace(u'_', u'-');
  if (processors.contains(plain)) return {Kind::Processor, plain};
  if (densities.contains(plain)) return {Kind::Density, plain, densities[plain]};
  if (textures.contains(plain)) return {Kind::Texture, plain};
  const QRegularExpressionMatch match = language.match(plain);
  return match.hasMatch() ? Qualifier{Kind::Language, match.captured(1)} : Qualifier();
}

/// A package file in a bundle.
struct Split {
  BundleEntry entry;
  QString module;  // empty: the base
  Qualifier qualifier;
  int variant = 0;
  bool isBase = false;
};

/// Reads the two ways to name parts: "split_config.zh.apk", "feature.config.zh.apk" and "base-zh.apk",
/// "feature-master_2.apk" in the folder "splits".
Split splitOf(const BundleEntry& entry) {
  static const QRegularExpression variant(u"_([2-9])$"_s);
  Split split{entry, {}, {}, 0, false};
  QString name = entry.name.section(u'/', -1).chopped(4);
  if (entry.name.startsWith("splits/"_L1)) {
    const QRegularExpressionMatch match = variant.match(name);
    if (match.hasMatch()) {
      split.variant = match.captured(1).toInt();
      name.chop(2);
    }
    split.module = name.section(u'-', 0, 0);
    if (split.module == u"base") split.module.clear();
    const QString rest = name.section(u'-', 1);
    split.isBase = split.module.isEmpty() && rest == u"master";
    if (rest != u"master") split.qualifier = qualifierOf(rest);
    return split;
  }
  if (name.startsWith("split_"_L1)) name.remove(0, 6);
  if (name.startsWith("config."_L1)) {
    split.qualifier = qualifierOf(name.mid(7));
  } else if (const qsizetype at = name.indexOf(".config."_L1); at > 0) {
    split.module = name.left(at);
    split.qualifier = qualifierOf(name.mid(at + 8));
  } else {
    split.module = name;
  }
  return split;
}

bool leadsOut(const QString& name) {
  return name.startsWith(u'/') || name.contains(u'\\') || name.contains(u':') ||
         name.split(u'/').contains(u".."_s);
}

/// A name that no system refuses, changes or takes for another thing.
bool isPlain(const QString& name) {
  static const QRegularExpression plain(u"^[A-Za-z0-9_][A-Za-z0-9_.+@ ()\\-]{0,199}$"_s);
  return plain.match(name).hasMatch() && !name.endsWith(u' ') && !name.endsWith(u'.');
}

Bilingual encryptedProblem() {
  return {u"文件已加密，无法读取"_s, u"It is encrypted and cannot be read"_s};
}

/// Of the texture formats that packs come in, the one that the headsets' chips read best.
QString bestTexture(const QStringList& offered) {
  for (const QString& format : {u"astc"_s, u"etc2"_s, u"etc1-rgb8"_s, u"etc1"_s})
    if (offered.contains(format)) return format;
  return offered.value(0);
}

/// Whether density `a` suits one of `wanted` better than `b`: the nearest above it, else the nearest below.
bool isNearer(int a, int b, int wanted) {
  if ((a >= wanted) != (b >= wanted)) return a >= wanted;
  return a >= wanted ? a < b : a > b;
}

/// The parts of one module that fit; nothing when it has none for the headset's processor.
std::optional<QList<Split>> fitting(const QList<Split>& module, const HeadsetTraits& headset) {
  using Kind = Qualifier::Kind;
  QStringList processors;
  QStringList textures;
  int density = 0;
  const int wanted = headset.density > 0 ? headset.density : usualDensity;
  for (const Split& split : module) {
    if (split.qualifier.kind == Kind::Processor) processors << split.qualifier.value;
    if (split.qualifier.kind == Kind::Texture) textures << split.qualifier.value;
    if (split.qualifier.kind != Kind::Density) continue;
    const int dots = split.qualifier.dots;
    if (density == 0 || isNearer(dots, density, wanted)) density = dots;
  }
  const auto processor = std::find_if(headset.processors.begin(), headset.processors.end(),
                                      [&processors](const QString& own) { return processors.contains(own); });
  if (!processors.isEmpty() && processor == headset.processors.end()) return std::nullopt;
  QList<Split> chosen;
  for (const Split& split : module) {
    const Qualifier& qualifier = split.qualifier;
    const bool fits = qualifier.kind == Kind::None ||
                      (qualifier.kind == Kind::Processor && qualifier.value == *processor) ||
                      (qualifier.kind == Kind::Density && qualifier.dots == density) ||
                      (qualifier.kind == Kind::Language && headset.languages.contains(qualifier.value)) ||
                      (qualifier.kind == Kind::Texture && qualifier.value == bestTexture(textures));
    if (fits) chosen << split;
  }
  return chosen;
}

/// The package files that an install may choose from, without what stands for other ways to install.
QList<Split> splitsIn(const QList<BundleEntry>& entries) {
  QList<Split> splits;
  const bool hasFolder = std::any_of(entries.begin(), entries.end(), [](const BundleEntry& entry) {
    return entry.name.startsWith("splits/"_L1) && entry.name.endsWith(".apk"_L1);
  });
  for (const BundleEntry& entry : entries) {
    if (!entry.name.endsWith(".apk"_L1, Qt::CaseInsensitive)) continue;
    if (hasFolder && !entry.name.startsWith("splits/"_L1) && !entry.name.startsWith("asset-slices/"_L1))
      continue;
    if (entry.name.startsWith("instant/"_L1) || entry.name.startsWith("standalones/"_L1)) continue;
    splits << splitOf(entry);
  }
  // The same parts for several ages of the system: the highest number is the newest, and headsets are new.
  QMap<QString, int> newest;
  const auto part = [](const Split& split) { return split.module + u'-' + split.qualifier.value; };
  for (const Split& split : splits) newest[part(split)] = qMax(newest[part(split)], split.variant);
  splits.removeIf([&](const Split& split) { return split.variant != newest[part(split)]; });
  if (std::any_of(splits.begin(), splits.end(), [](const Split& split) { return split.isBase; }))
    return splits;

  // The base is called base, or after the package; if it is the only package file, its name does not matter.
  QList<Split*> candidates;
  for (Split& split : splits)
    if (split.qualifier.kind == Qualifier::Kind::None) candidates << &split;
  for (Split* split : candidates)
    if (split->module == u"base" || split->module == u"universal" || candidates.size() == 1)
      split->isBase = true;
  const auto bases =
      std::count_if(splits.begin(), splits.end(), [](const Split& split) { return split.isBase; });
  if (bases == 0 && !candidates.isEmpty()) {
    const auto largest =
        std::max_element(candidates.begin(), candidates.end(), [](const Split* a, const Split* b) {
          const bool dotsA = a->module.contains(u'.');
          const bool dotsB = b->module.contains(u'.');
          return dotsA != dotsB ? dotsB : a->entry.bytes < b->entry.bytes;
        });
    (*largest)->isBase = true;
  }
  for (Split& split : splits)
    if (split.isBase) split.module.clear();
  return splits;
}

void readDescription(const QString& path, Bundle& bundle) {
  const PackageArchive archive(path);
  for (const QString& file : {u"manifest.json"_s, u"info.json"_s}) {
    const auto content = archive.read(file, mostDescriptionBytes);
    if (!content) continue;
    const QJsonObject description = QJsonDocument::fromJson(*content).object();
    const auto text = [&description](std::initializer_list<QLatin1StringView> keys) {
      for (const QLatin1StringView key : keys) {
        const QJsonValue value = description[key];
        if (value.isString() && !value.toString().isEmpty()) return value.toString().left(500);
        if (value.isDouble()) return QString::number(value.toInteger());
      }
      return QString();
    };
    bundle.package = text({"package_name"_L1, "pname"_L1});
    bundle.label = text({"name"_L1, "app_name"_L1});
    bundle.version = text({"version_name"_L1, "release_version"_L1});
    bundle.build = text({"version_code"_L1, "versioncode"_L1});
    break;
  }
  bundle.icon = archive.read(u"icon.png"_s, mostIconBytes).value_or(QByteArray());
}

}  // namespace

Bundle readBundle(const QString& path) {
  Bundle bundle;
  std::unique_ptr<zip_t, Discard> archive;
  if (QFileInfo(path).isFile()) archive.reset(zip_open(path.toUtf8().constData(), ZIP_RDONLY, nullptr));
  if (!archive) {
    bundle.problem = {u"不是可读的压缩文件，可能不完整或已加密"_s,
                      u"This is no readable archive; it may be incomplete or encrypted"_s};
    return bundle;
  }
  const zip_int64_t count = zip_get_num_entries(archive.get(), 0);
  if (count > mostEntries) {
    bundle.problem = {u"里面的文件太多"_s, u"It holds too many files"_s};
    return bundle;
  }
  for (zip_int64_t i = 0; i < count; ++i) {
    zip_stat_t stat;
    zip_stat_init(&stat);
    if (zip_stat_index(archive.get(), static_cast<zip_uint64_t>(i), 0, &stat) != 0) continue;
    if ((stat.valid & (ZIP_STAT_NAME | ZIP_STAT_SIZE)) != (ZIP_STAT_NAME | ZIP_STAT_SIZE)) continue;
    BundleEntry entry;
    entry.index = static_cast<quint64>(i);
    entry.name = QString::fromUtf8(stat.name);
    entry.bytes = static_cast<qint64>(qMin<zip_uint64_t>(stat.size, mostBytes + 1));
    entry.encrypted = (stat.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && stat.encryption_method != ZIP_EM_NONE;
    bundle.entries << entry;
  }
  archive.reset();
  readDescription(path, bundle);
  return bundle;
}

HeadsetTraits HeadsetTraits::in(const QString& reply) {
  HeadsetTraits traits;
  const QStringList lines = reply.split(u'\n');
  traits.processors = lines.value(0).trimmed().split(u',', Qt::SkipEmptyParts);
  traits.density = lines.value(1).trimmed().toInt();
  for (const QString& line : lines.mid(2)) {
    const QStringList locales = line.trimmed().split(u',', Qt::SkipEmptyParts);
    for (const QString& locale : locales) traits.languages << locale.section(u'-', 0, 0);
  }
  traits.languages.removeDuplicates();
  return traits;
}

qint64 BundleChoice::bytes() const {
  qint64 sum = 0;
  for (const Part& part : packages) sum += part.entry.bytes;
  for (const Part& part : expansionFiles) sum += part.entry.bytes;
  return sum;
}

BundleChoice chooseParts(const QList<BundleEntry>& entries, const HeadsetTraits& headset) {
  BundleChoice choice;
  QMap<QString, QList<Split>> modules;
  for (const Split& split : splitsIn(entries)) modules[split.module] << split;
  for (const QList<Split>& module : std::as_const(modules)) {
    const auto parts = fitting(module, headset);
    if (!parts) {
      choice.problem = {u"里面没有适合此头显处理器的部分"_s,
                        u"It has no part for this headset's processor"_s};
      return choice;
    }
    for (const Split& split : *parts) {
      const BundleChoice::Part part = {split.entry, split.entry.name.section(u'/', -1)};
      split.isBase ? choice.packages.prepend(part) : choice.packages.append(part);
    }
  }
  const QList<Split> ofBase = modules.value(QString());
  const bool hasBase =
      std::any_of(ofBase.begin(), ofBase.end(), [](const Split& split) { return split.isBase; });
  if (!hasBase) {
    choice.problem = {u"里面没有安装包"_s, u"It holds no package"_s};
    return choice;
  }
  for (const BundleEntry& entry : entries) {
    if (entry.name.endsWith(".obb"_L1, Qt::CaseInsensitive))
      choice.expansionFiles << BundleChoice::Part{entry, entry.name.section(u'/', -1)};
  }
  QSet<QString> names;
  for (const QList<BundleChoice::Part>* parts : {&choice.packages, &choice.expansionFiles}) {
    for (const BundleChoice::Part& part : *parts) {
      if (part.entry.encrypted) choice.problem = encryptedProblem();
      if (leadsOut(part.entry.name) || !isPlain(part.fileName) || names.contains(part.fileName.toLower()))
        choice.problem = {u"里面的文件名不可用：%1"_s.arg(part.entry.name.left(100)),
                          u"A name in it cannot be used: %1"_s.arg(part.entry.name.left(100))};
      names.insert(part.fileName.toLower());
    }
  }
  if (choice.bytes() > mostBytes) choice.problem = {u"解压后太大"_s, u"Unpacked it is too large"_s};
  return choice;
}

}  // namespace orvanta
