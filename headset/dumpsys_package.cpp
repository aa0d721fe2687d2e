#include "dumpsys_package.h"

#include <QCryptographicHash>

namespace orvanta::headset {

using namespace Qt::StringLiterals;

namespace {

/// Stands in for the object address of a real report: seven hex digits, stable for a package.
QString objectHash(const QString& name, const QString& kind) {
  const QByteArray hash = QCryptographicHash::hash((kind + name).toUtf8(), QCryptographicHash::Md5);
  return QString::fromLatin1(hash.toHex().left(7));
}

QString timeText(const QDateTime& time) {
  return time.toString(u"yyyy-MM-dd HH:mm:ss"_s);
}

QString resolverTable(const QList<Package>& packages) {
  QString text;
  for (const Package& package : packages) {
    if (package.categories.isEmpty() || !package.isInstalled) continue;
    text +=
        u"        %1 %2/.MainActivity filter %3\n          Action: \"android.intent.action.MAIN\"\n"_s.arg(
            objectHash(package.name, u"activity"_s), package.name, objectHash(package.name, u"filter"_s));
    for (const QString& category : package.categories)
      text += u"          Category: \"%1\"\n"_s.arg(category);
  }
  if (text.isEmpty()) return {};
  return "Activity Resolver Table:\n  Non-Data Actions:\n      android.intent.action.MAIN:\n"_L1 + text +
         u'\n';
}

QString keySets(const QList<Package>& packages) {
  QString text = u"Key Set Manager:\n"_s;
  for (const Package& package : packages) {
    text += u"  [%1]\n      Signing KeySets: %2\n"_s.arg(package.name).arg(package.userId % 100);
  }
  return text + u'\n';
}

QString identity(const Package& package) {
  const QString& name = package.name;
  QString text;
  const auto line = [&text](const QString& content) { text += u"    "_s + content + u'\n'; };
  line(u"userId=%1"_s.arg(package.userId));
  if (!package.isInstalled) {
    line(u"pkg=null"_s);
  } else {
    line(u"pkg=Package{%1 %2}"_s.arg(objectHash(name, u"pkg"_s), name));
  }
  line("codePath="_L1 + package.codePath);
  line("resourcePath="_L1 + package.codePath);
  line(u"legacyNativeLibraryDir=%1/lib"_s.arg(package.codePath));
  line(u"primaryCpuAbi=arm64-v8a"_s);
  line(u"secondaryCpuAbi=null"_s);
  if (!package.isInstalled) {
    // Without the package file the build comes from the package manager's records.
    line(u"versionCode=%1"_s.arg(package.versionCode));
    return text;
  }
  line(u"versionCode=%1 minSdk=%2 targetSdk=%3"_s.arg(package.versionCode)
           .arg(package.minSdk)
           .arg(package.targetSdk));
  line("versionName="_L1 + package.versionName);
  const QString splits = package.splits.isEmpty() ? u"base"_s : "base, "_L1 + package.splits.join(u", "_s);
  line(u"splits=[%1]"_s.arg(splits));
  line(u"apkSigningVersion=2"_s);
  line(u"applicationInfo=ApplicationInfo{%1 %2}"_s.arg(objectHash(name, u"info"_s), name));
  const QString flags = package.isSystem ? u"[ SYSTEM HAS_CODE ALLOW_CLEAR_USER_DATA ]"_s
                                         : u"[ HAS_CODE ALLOW_CLEAR_USER_DATA ]"_s;
  line("flags="_L1 + flags);
  line(
      u"privateFlags=[ PRIVATE_FLAG_ACTIVITIES_RESIZE_MODE_RESIZEABLE_VIA_SDK_VERSION "
      "PRIVATE_FLAG_REQUEST_LEGACY_EXTERNAL_STORAGE ]"_s);
  line("dataDir=/data/user/0/"_L1 + name);
  line(u"supportsScreens=[small, medium, large, xlarge, resizeable, anyDensity]"_s);
  line("timeStamp="_L1 + timeText(package.lastUpdate));
  line("firstInstallTime="_L1 + timeText(package.firstInstall));
  line("lastUpdateTime="_L1 + timeText(package.lastUpdate));
  if (!package.installer.isEmpty()) line("installerPackageName="_L1 + package.installer);
  line(u"signatures=PackageSignatures{%1 version:2, signatures:[%2], past signatures:[]}"_s.arg(
      objectHash(name, u"signatures"_s), objectHash(name, u"key"_s)));
  line(u"installPermissionsFixed=true"_s);
  line("pkgFlags="_L1 + flags);
  return text;
}

QString permissionLists(const Package& package) {
  QString requested;
  QString atInstall;
  QString atRunTime;
  for (const QString& permission : package.permissions) {
    requested += u"      %1\n"_s.arg(permission);
    if (!package.grants.contains(permission)) {
      atInstall += u"      %1: granted=true\n"_s.arg(permission);
      continue;
    }
    atRunTime +=
        u"        %1: granted=%2, flags=[ USER_SENSITIVE_WHEN_GRANTED|USER_SENSITIVE_WHEN_DENIED]\n"_s.arg(
            permission, package.grants.value(permission) ? u"true"_s : u"false"_s);
  }
  QString text;
  if (!requested.isEmpty()) text += "    requested permissions:\n"_L1 + requested;
  if (!atInstall.isEmpty()) text += "    install permissions:\n"_L1 + atInstall;
  text +=
      u"    User 0: ceDataInode=%1 installed=%2 hidden=false suspended=false stopped=false notLaunched=false "
      "enabled=%3 instant=false virtual=false\n"_s.arg(1000000 + package.userId)
          .arg(package.isInstalled ? u"true"_s : u"false"_s)
          .arg(package.isEnabled ? 0 : 3);
  if (package.permissions.contains("android.permission.INTERNET"_L1)) text += u"      gids=[3003]\n"_s;
  if (!atRunTime.isEmpty()) text += "      runtime permissions:\n"_L1 + atRunTime;
  return text;
}

}  // namespace

QString packageReport(const QList<Package>& packages) {
  QString text = resolverTable(packages) + keySets(packages) + "Packages:\n"_L1;
  for (const Package& package : packages) {
    text += u"  Package [%1] (%2):\n"_s.arg(package.name, objectHash(package.name, u"setting"_s));
    text += identity(package);
    text += permissionLists(package);
  }
  return text;
}

QString unknownPackageReport(const QString& name) {
  return u"\nDexopt state:\n  Unable to find package: %1\n\n\nCompiler stats:\n  Unable to find package: %1\n"_s
      .arg(name);
}

}  // namespace orvanta::headset
