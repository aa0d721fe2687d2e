#include "package_installer.h"

#include <unistd.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRandomGenerator>

namespace orvanta::headset {

using namespace Qt::StringLiterals;

namespace {

constexpr int kFailed = 1;
constexpr int kDeviceSdk = 29;
constexpr int kFirstSdkWithRuntimePermissions = 23;
constexpr qsizetype kBlock = 1024 * 1024;
// Where a session keeps its options.
constexpr QLatin1StringView kOptionsFile("options");

/// 22 characters and "==", the suffix of an installed package's folder.
QString pathToken() {
  QByteArray bytes(16, Qt::Uninitialized);
  for (char& byte : bytes) byte = static_cast<char>(QRandomGenerator::global()->bounded(256));
  return QString::fromLatin1(bytes.toBase64(QByteArray::Base64UrlEncoding));
}

QString notEnoughSpace() {
  return u"\nException occurred while executing 'install':\n"
         "android.os.ParcelableException: java.io.IOException: Requested internal only, but not enough "
         "space\n"
         "\tat android.util.ExceptionUtils.wrap(ExceptionUtils.java:34)\n"
         "\tat "
         "com.android.server.pm.PackageInstallerService.createSession(PackageInstallerService.java:566)\n"
         "\tat "
         "com.android.server.pm.PackageManagerShellCommand.doCreateSession(PackageManagerShellCommand.java:"
         "3152)\n"
         "\tat com.android.server.pm.PackageManagerShellCommand.doRunInstall(PackageManagerShellCommand.java:1330)\n"_s;
}

/// Drains `fd`, so that a desktop that is still sending gets to read the reply.
void drain(int fd) {
  QByteArray block(kBlock, Qt::Uninitialized);
  while (::read(fd, block.data(), static_cast<size_t>(block.size())) > 0) {
  }
}

void drainExactly(int fd, qint64 size) {
  QByteArray block(kBlock, Qt::Uninitialized);
  while (size > 0) {
    const ssize_t got = ::read(fd, block.data(), static_cast<size_t>(std::min<qint64>(size, block.size())));
    if (got <= 0) return;
    size -= got;
  }
}

bool copyExactly(int fd, qint64 size, QFile& target) {
  QByteArray block(kBlock, Qt::Uninitialized);
  while (size > 0) {
    const ssize_t got = ::read(fd, block.data(), static_cast<size_t>(std::min<qint64>(size, block.size())));
    if (got <= 0 || target.write(block.constData(), got) != got) return false;
    size -= got;
  }
  return true;
}

}  // namespace

InstallOptions InstallOptions::parse(const QStringList& words) {
  InstallOptions options;
  for (qsizetype i = 0; i < words.size(); ++i) {
    const QString& word = words[i];
    if (word == "-S"_L1) {
      options.size = words.value(++i).toLongLong();
    } else if (word == "-i"_L1) {
      options.installer = words.value(++i);
    } else if (word == "--user"_L1 || word == "--abi"_L1 || word == "--install-location"_L1) {
      ++i;
    } else if (word.startsWith(u'-') && word.size() > 1) {
      options.replace |= word == "-r"_L1;
      options.downgrade |= word == "-d"_L1;
      options.grantAll |= word == "-g"_L1;
      options.testOnly |= word == "-t"_L1;
    } else {
      options.operands.append(word);
    }
  }
  return options;
}

QString PackageInstaller::sessionFolder(const QString& id) const {
  return u"%1/data/app/vmdl%2.tmp"_s.arg(m_host.root(), id);
}

int PackageInstaller::report(Call& call, const QString& failure) const {
  if (failure.isEmpty()) {
    call.print(u"Success\n"_s);
    return 0;
  }
  call.print(u"Failure [%1]\n"_s.arg(failure));
  return kFailed;
}

bool PackageInstaller::stage(Call& call, const InstallOptions& options, const QString& source,
                             const QString& target) {
  const bool streamed = source.isEmpty() || source == "-"_L1;
  if (streamed && options.size < 0) {
    call.printError(u"Error: must specify a APK size\n"_s);
    return false;
  }
  QFile file(target);
  if (streamed) {
    if (m_host.bytesAvailable() < options.size) {
      drainExactly(call.input.get(), options.size);
      call.printError(notEnoughSpace());
      return false;
    }
    return file.open(QIODevice::WriteOnly) && copyExactly(call.input.get(), options.size, file);
  }
  UniqueFd from;
  struct stat info {};
  const QByteArray path = source.toUtf8();
  if (m_host.files().stat(path, true, &info) != 0 || m_host.files().openForReading(path, &from) != 0) {
    call.printError(u"Error: Unable to open file: %1\nError: Can't open file: %1\n"_s.arg(source));
    return false;
  }
  if (m_host.bytesAvailable() < info.st_size) {
    report(call, u"INSTALL_FAILED_INSUFFICIENT_STORAGE"_s);
    return false;
  }
  return file.open(QIODevice::WriteOnly) && copyExactly(from.get(), info.st_size, file);
}

int PackageInstaller::install(Call& call, const QStringList& words) {
  const InstallOptions options = InstallOptions::parse(words);
  const QString folder =
      sessionFolder(QString::number(QRandomGenerator::global()->bounded(100000000, 2147483647)));
  QDir().mkpath(folder);
  int code = kFailed;
  if (stage(call, options, options.operands.value(0), folder + "/base.apk"_L1)) {
    code = report(call, commit(folder, options));
  }
  QDir(folder).removeRecursively();
  return code;
}

int PackageInstaller::createSession(Call& call, const QStringList& words) {
  const QString id = QString::number(QRandomGenerator::global()->bounded(100000000, 2147483647));
  const QString folder = sessionFolder(id);
  QDir().mkpath(folder);
  QFile options(folder + u'/' + kOptionsFile);
  if (!options.open(QIODevice::WriteOnly)) return kFailed;
  options.write(words.join(u'\n').toUtf8());
  call.print(u"Success: created install session [%1]\n"_s.arg(id));
  return 0;
}

int PackageInstaller::writeSession(Call& call, const QStringList& words) {
  // install-write -S SIZE SESSION NAME [PATH|-]
  const InstallOptions options = InstallOptions::parse(words);
  const QString folder = sessionFolder(options.operands.value(0));
  if (!QDir(folder).exists()) {
    if (options.size > 0) drain(call.input.get());
    call.printError(u"Error: java.lang.SecurityException: Caller has no access to session %1\n"_s.arg(
        options.operands.value(0)));
    return kFailed;
  }
  const QString name = options.operands.value(1).section(u'/', -1);
  if (!stage(call, options, options.operands.value(2), folder + u'/' + name)) return kFailed;
  call.print(u"Success: streamed %1 bytes\n"_s.arg(QFile(folder + u'/' + name).size()));
  return 0;
}

int PackageInstaller::commitSession(Call& call, const QStringList& words) {
  const QString folder = sessionFolder(InstallOptions::parse(words).operands.value(0));
  QFile stored(folder + u'/' + kOptionsFile);
  if (!stored.open(QIODevice::ReadOnly)) return kFailed;
  const InstallOptions options = InstallOptions::parse(QString::fromUtf8(stored.readAll()).split(u'\n'));
  stored.remove();
  const int code = report(call, commit(folder, options));
  QDir(folder).removeRecursively();
  return code;
}

int PackageInstaller::abandonSession(Call& call, const QStringList& words) {
  QDir(sessionFolder(InstallOptions::parse(words).operands.value(0))).removeRecursively();
  return report(call, {});
}

QString PackageInstaller::refusal(const Badging& base, const InstallOptions& options,
                                  const QString& folder) const {
  if (base.minSdk > kDeviceSdk) {
    return u"INSTALL_FAILED_OLDER_SDK: Failed parse during installPackageLI: %1/base.apk (at Binary XML file "
           u"line #9): "
           "Requires newer sdk version #%2 (current version is #%3)"_s.arg(folder)
               .arg(base.minSdk)
               .arg(kDeviceSdk);
  }
  if (base.isTestOnly && !options.testOnly) {
    return u"INSTALL_FAILED_TEST_ONLY: installPackageLI"_s;
  }
  if (!base.nativeCode.isEmpty() && !base.nativeCode.contains("arm64-v8a"_L1) &&
      !base.nativeCode.contains("armeabi-v7a"_L1) && !base.nativeCode.contains("armeabi"_L1)) {
    return u"INSTALL_FAILED_NO_MATCHING_ABIS: Failed to extract native libraries, res=-113"_s;
  }
  const std::optional<Package> old = m_packages.find(base.package);
  if (!old) return {};
  if (old->isInstalled && !options.replace) {
    return u"INSTALL_FAILED_ALREADY_EXISTS: Attempt to re-install %1 without first uninstalling."_s.arg(
        base.package);
  }
  if (base.versionCode < old->versionCode && !options.downgrade) {
    return u"INSTALL_FAILED_VERSION_DOWNGRADE: Downgrade detected: Update version code %1 is older than current %2"_s
        .arg(base.versionCode)
        .arg(old->versionCode);
  }
  return {};
}

QString PackageInstaller::newCodePath(const QString& package) const {
  const QString folder = u"%1-%2"_s.arg(package, pathToken());
  return m_host.usesNestedCodePaths() ? u"/data/app/~~%1/%2"_s.arg(pathToken(), folder)
                                      : "/data/app/"_L1 + folder;
}

QString PackageInstaller::commit(const QString& folder, const InstallOptions& options) {
  const QString asked = m_host.faults().installFailure;
  if (!asked.isEmpty()) return asked;
  const QString shownFolder = folder.mid(m_host.root().size());

  std::optional<Badging> base;
  QString baseFile;
  QMap<QString, QString> splitFiles;
  QDirIterator files(folder, QDir::Files);
  while (files.hasNext()) {
    const QString file = files.next();
    const std::optional<Badging> badging = readBadging(file);
    if (!badging) {
      return u"INSTALL_PARSE_FAILED_NOT_APK: Failed to parse %1/%2: Failed to load asset path %1/%2"_s.arg(
          shownFolder, files.fileName());
    }
    if (badging->split.isEmpty()) {
      if (base) return u"INSTALL_FAILED_INVALID_APK: Split null was defined multiple times"_s;
      base = badging;
      baseFile = file;
    } else {
      splitFiles.insert(badging->split, file);
    }
  }
  if (!base) {
    return u"INSTALL_FAILED_INVALID_APK: Full install must include a base package: splits=[%1]"_s.arg(
        splitFiles.keys().join(u", "_s));
  }
  for (const QString& file : std::as_const(splitFiles)) {
    const QString package = readBadging(file).value_or(Badging()).package;
    if (package != base->package) {
      return u"INSTALL_FAILED_INVALID_APK: %1/%2 package %3 inconsistent with %4"_s.arg(
          shownFolder, file.section(u'/', -1), package, base->package);
    }
  }
  if (splitFiles.isEmpty() && base->requiresSplits) {
    return u"INSTALL_FAILED_MISSING_SPLIT: Missing split for %1"_s.arg(base->package);
  }
  if (const QString reason = refusal(*base, options, shownFolder); !reason.isEmpty()) return reason;

  const std::optional<Package> old = m_packages.find(base->package);
  Package package = old.value_or(Package());
  const QString oldCode = old && old->isInstalled ? old->codePath : QString();
  package.name = base->package;
  package.versionCode = base->versionCode;
  package.versionName = base->versionName;
  package.minSdk = base->minSdk;
  package.targetSdk = base->targetSdk;
  package.permissions = base->permissions;
  package.splits = splitFiles.keys();
  package.isInstalled = true;
  package.installer = options.installer;
  package.categories.clear();
  if (base->isLaunchable) package.categories = {u"android.intent.category.LAUNCHER"_s};
  QMap<QString, bool> grants;
  for (const QString& permission : std::as_const(package.permissions)) {
    if (!isRuntimePermission(permission)) continue;
    const bool always = options.grantAll || package.targetSdk < kFirstSdkWithRuntimePermissions;
    grants.insert(permission, always || package.grants.value(permission));
  }
  package.grants = grants;
  package.lastUpdate = QDateTime::currentDateTime();
  if (!old) package.firstInstall = package.lastUpdate;
  package.codePath = newCodePath(package.name);

  const QString code = m_host.root() + package.codePath;
  QDir().mkpath(code);
  bool moved = QFile::rename(baseFile, code + "/base.apk"_L1);
  for (auto it = splitFiles.begin(); it != splitFiles.end(); ++it) {
    moved = moved && QFile::rename(it.value(), u"%1/split_%2.apk"_s.arg(code, it.key()));
  }
  if (!moved) return u"INSTALL_FAILED_INTERNAL_ERROR"_s;
  QDir().mkpath(m_host.root() + "/data/data/"_L1 + package.name);
  m_packages.put(package);
  if (!oldCode.isEmpty()) QDir(m_host.root() + oldCode).removeRecursively();
  return {};
}

}  // namespace orvanta::headset
