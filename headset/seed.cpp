#include "seed.h"

#include <QDir>
#include <QFile>
#include <array>

#include "sample_package.h"

namespace orvanta::headset {

using namespace Qt::StringLiterals;

namespace {

struct Name {
  const char16_t* label;
  const char* word;
};

constexpr std::array<Name, 8> kNames = {{{u"Ocean Rift", "oceanrift"},
                                         {u"节奏空间", "jiezou"},
                                         {u"Schlösser & Gärten", "schloesser"},
                                         {u"リズムの森", "rizumu"},
                                         {u"Émile's Atelier", "atelier"},
                                         {u"Космос", "kosmos"},
                                         {u"별빛 우체국", "byeolbit"},
                                         {u"Golf 🏌 Club", "golfclub"}}};

constexpr std::array<const char*, 6> kPermissions = {"android.permission.INTERNET",
                                                     "android.permission.RECORD_AUDIO",
                                                     "android.permission.READ_EXTERNAL_STORAGE",
                                                     "android.permission.WRITE_EXTERNAL_STORAGE",
                                                     "android.permission.CAMERA",
                                                     "android.permission.ACCESS_NETWORK_STATE"};

// Real blocks on the disk, because the device's du counts blocks.
constexpr std::array<qint64, 7> kSizes = {0, 1, 5'000, 40'000, 300'000, 1'500'000, 0};
constexpr qint64 kLargeSize = 12'000'000;
constexpr int kLargeEvery = 25;

qint64 sizeOf(int index) {
  return index % kLargeEvery == 0 ? kLargeSize : kSizes[static_cast<std::size_t>(index) % kSizes.size()];
}

bool fill(const QString& path, qint64 size) {
  QDir().mkpath(path.section(u'/', 0, -2));
  QFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write(QByteArray(size, 'x')) == size;
}

QString token(int index, int salt) {
  const QByteArray bytes =
      QByteArray::number(qulonglong(qHash(index, static_cast<size_t>(salt)))).leftJustified(16, '_', true);
  return QString::fromLatin1(bytes.toBase64(QByteArray::Base64UrlEncoding));
}

QString codePathOf(const QString& package, int index) {
  const QString folder = u"%1-%2"_s.arg(package, token(index, 1));
  return index % 2 == 0 ? "/data/app/"_L1 + folder : u"/data/app/~~%1/%2"_s.arg(token(index, 2), folder);
}

QString seedOne(SystemHost& host, Packages& packages, int index) {
  const Name& name = kNames[static_cast<std::size_t>(index) % kNames.size()];
  SamplePackage sample;
  sample.package = u"com.example.%1.n%2"_s.arg(QLatin1StringView(name.word)).arg(index);
  sample.label = QString::fromUtf16(name.label) + u" %1"_s.arg(index);
  sample.icon = index % 5 != 0;
  sample.localizedLabels = {{u"zh-rCN"_s, u"应用 %1"_s.arg(index)}};
  sample.versionCode = 100 + index;
  sample.versionName = u"1.%1"_s.arg(index);
  for (std::size_t i = 0; i <= static_cast<std::size_t>(index) % kPermissions.size(); ++i) {
    sample.permissions.append(QLatin1StringView(kPermissions[i]));
  }
  sample.launchable = index % 5 != 4;
  sample.paddingBytes = sizeOf(index);

  Package package;
  package.name = sample.package;
  package.versionCode = sample.versionCode;
  package.versionName = sample.versionName;
  package.minSdk = sample.minSdk;
  package.targetSdk = sample.targetSdk;
  package.permissions = sample.permissions;
  for (const QString& permission : std::as_const(package.permissions)) {
    if (isRuntimePermission(permission)) package.grants.insert(permission, index % 2 == 0);
  }
  if (sample.launchable) package.categories = {u"android.intent.category.LAUNCHER"_s};
  package.firstInstall = package.lastUpdate = QDateTime(QDate(2021, 1 + index % 12, 1), QTime(9, 30));
  package.codePath = codePathOf(package.name, index);
  // Of each ten, the third is uninstalled with its data kept and the fourth has splits.
  package.isInstalled = index % 10 != 3;
  if (index % 10 == 4) package.splits = {u"config.arm64_v8a"_s, u"config.zh"_s};

  const QStringList files = package.files();
  if (package.isInstalled) {
    if (const QString problem = sample.write(host.root() + files.first()); !problem.isEmpty()) return problem;
    for (const QString& split : std::as_const(package.splits)) {
      SamplePackage piece = sample;
      piece.split = split;
      piece.paddingBytes = 0;
      const QString target = u"%1%2/split_%3.apk"_s.arg(host.root(), package.codePath, split);
      if (const QString problem = piece.write(target); !problem.isEmpty()) return problem;
    }
  }
  const QString shared = host.root() + "/storage/emulated/0/Android/"_L1;
  const qint64 obb = sizeOf(index + 2);
  const qint64 data = sizeOf(index + 4);
  if (obb > 0) fill(u"%1obb/%2/main.%3.%2.obb"_s.arg(shared, package.name).arg(package.versionCode), obb);
  if (data > 0) fill(u"%1data/%2/files/save.dat"_s.arg(shared, package.name), data);
  packages.put(package);
  return {};
}

}  // namespace

QString seedApps(SystemHost& host, Packages& packages, int count, const QString& stateDir) {
  QFile done(stateDir + "/apps"_L1);
  if (!done.open(QIODevice::ReadWrite)) return u"cannot write to "_s + done.fileName();
  int index = done.readAll().trimmed().toInt();
  for (; index < count; ++index) {
    if (const QString problem = seedOne(host, packages, index); !problem.isEmpty()) return problem;
  }
  done.resize(0);
  done.seek(0);
  done.write(QByteArray::number(index) + '\n');
  return {};
}

}  // namespace orvanta::headset
