#include "package_manager.h"

#include <QDir>

#include "dumpsys_package.h"
#include "package_installer.h"

namespace orvanta::headset {

using namespace Qt::StringLiterals;

namespace {

constexpr int kFailed = 1;
constexpr int kException = 255;

/// The words after the options; "--user" takes its number with it.
QStringList operands(const QStringList& words) {
  QStringList result;
  for (qsizetype i = 0; i < words.size(); ++i) {
    if (words[i] == "--user"_L1) {
      ++i;
    } else if (!words[i].startsWith(u'-')) {
      result.append(words[i]);
    }
  }
  return result;
}

int javaException(Call& call, const QString& command, const QString& what, const QString& where) {
  call.printError(
      u"\nException occurred while executing '%1':\n%2\n"
      "\tat com.android.server.pm.%3\n"
      "\tat com.android.server.pm.PackageManagerShellCommand.onCommand(PackageManagerShellCommand.java:255)\n"
      "\tat android.os.ShellCommand.exec(ShellCommand.java:104)\n"_s.arg(command, what, where));
  return kException;
}

}  // namespace

int PackageManager::run(Call& call) {
  QStringList words = call.arguments;
  const QString verb = words.isEmpty() ? QString() : words.takeFirst();
  PackageInstaller installer(m_host, m_packages);
  if (verb == "install"_L1) return installer.install(call, words);
  if (verb == "install-create"_L1) return installer.createSession(call, words);
  if (verb == "install-write"_L1) return installer.writeSession(call, words);
  if (verb == "install-commit"_L1) return installer.commitSession(call, words);
  if (verb == "install-abandon"_L1) return installer.abandonSession(call, words);
  if (verb == "list"_L1) return list(call, words);
  if (verb == "path"_L1) return path(call, words);
  if (verb == "grant"_L1) return changePermission(call, words, true);
  if (verb == "revoke"_L1) return changePermission(call, words, false);
  if (verb == "enable"_L1) return setEnabled(call, words, true);
  if (verb == "disable-user"_L1 || verb == "disable"_L1) return setEnabled(call, words, false);
  if (verb == "uninstall"_L1) return uninstall(call, words);
  if (verb == "clear"_L1) return clear(call, words);
  if (verb == "dump"_L1) {
    const std::optional<Package> package = m_packages.find(words.value(0));
    call.print(package ? packageReport({*package}) : unknownPackageReport(words.value(0)));
    return 0;
  }
  if (verb.isEmpty() || verb == "help"_L1) {
    call.print(
        u"Package manager (package) commands:\n  help\n    Print this help text.\n\n"
        "  path [--user USER_ID] PACKAGE\n  dump PACKAGE\n  list packages [-f] [-d] [-e] [-s] [-3] [-i] [-u] "
        "[FILTER]\n"
        "  install [-rtdg] [-i PACKAGE] [-S BYTES] [PATH|-]\n  uninstall [-k] PACKAGE\n"
        "  grant PACKAGE PERMISSION\n  revoke PACKAGE PERMISSION\n  clear PACKAGE\n"_s);
    return 0;
  }
  call.printError(u"Unknown command: %1\n"_s.arg(verb));
  return kException;
}

int PackageManager::list(Call& call, const QStringList& words) {
  const QString what = words.value(0);
  if (what == "users"_L1) {
    call.print(u"Users:\n\tUserInfo{0:Owner:13} running\n"_s);
    return 0;
  }
  if (what != "packages"_L1 && what != "package"_L1) {
    call.printError(u"Error: unknown list type '%1'\n"_s.arg(what));
    return kException;
  }
  const QStringList options = words.mid(1);
  const QString filter = operands(options).value(0);
  const auto has = [&options](QLatin1StringView option) { return options.contains(option); };
  QString text;
  const QList<Package> all = m_packages.all();
  for (const Package& package : all) {
    if (!package.isInstalled && !has("-u"_L1)) continue;
    if (has("-3"_L1) && package.isSystem) continue;
    if (has("-s"_L1) && !package.isSystem) continue;
    if (has("-d"_L1) && package.isEnabled) continue;
    if (has("-e"_L1) && !package.isEnabled) continue;
    if (!package.name.contains(filter)) continue;
    text += "package:"_L1;
    // A package with only its data left has no file; the real listing says "null".
    if (has("-f"_L1)) text += (package.isInstalled ? package.files().value(0) : u"null"_s) + u'=';
    text += package.name;
    if (has("--show-versioncode"_L1)) text += u" versionCode:%1"_s.arg(package.versionCode);
    if (has("-i"_L1)) {
      text += "  installer="_L1 + (package.installer.isEmpty() ? u"null"_s : package.installer);
    }
    if (has("-U"_L1)) text += u" uid:%1"_s.arg(package.userId);
    text += u'\n';
  }
  call.print(text);
  return 0;
}

int PackageManager::path(Call& call, const QStringList& words) {
  const std::optional<Package> package = m_packages.find(operands(words).value(0));
  if (!package || !package->isInstalled) return kFailed;
  QString text;
  const QStringList files = package->files();
  for (const QString& file : files) text += "package:"_L1 + file + u'\n';
  call.print(text);
  return 0;
}

int PackageManager::changePermission(Call& call, const QStringList& words, bool grant) {
  const QString command = grant ? u"grant"_s : u"revoke"_s;
  const QString name = operands(words).value(0);
  const QString permission = operands(words).value(1);
  if (permission.isEmpty()) {
    call.printError(u"Error: no %1 specified\n"_s.arg(name.isEmpty() ? u"package"_s : u"permission"_s));
    return kFailed;
  }
  const QString where =
      u"permission.PermissionManagerService.%1RuntimePermission(PermissionManagerService.java:1460)"_s.arg(
          command);
  std::optional<Package> package = m_packages.find(name);
  if (!package || !package->isInstalled) {
    return javaException(call, command, u"java.lang.IllegalArgumentException: Unknown package: "_s + name,
                         where);
  }
  if (!package->permissions.contains(permission)) {
    return javaException(
        call, command,
        u"java.lang.SecurityException: Package %1 has not requested permission %2"_s.arg(name, permission),
        where);
  }
  if (!package->grants.contains(permission)) {
    return javaException(
        call, command,
        u"java.lang.SecurityException: Permission %1 requested by %2 is not a changeable permission type"_s
            .arg(permission, name),
        where);
  }
  package->grants.insert(permission, grant);
  m_packages.put(*package);
  return 0;
}

int PackageManager::setEnabled(Call& call, const QStringList& words, bool enabled) {
  const QString name = operands(words).value(0);
  std::optional<Package> package = m_packages.find(name);
  if (!package || !package->isInstalled) {
    return javaException(call, enabled ? u"enable"_s : u"disable-user"_s,
                         u"java.lang.IllegalArgumentException: Unknown package: "_s + name,
                         u"PackageManagerService.setEnabledSetting(PackageManagerService.java:20600)"_s);
  }
  package->isEnabled = enabled;
  m_packages.put(*package);
  call.print(u"Package %1 new state: %2\n"_s.arg(name, enabled ? u"enabled"_s : u"disabled-user"_s));
  return 0;
}

int PackageManager::uninstall(Call& call, const QStringList& words) {
  const QString name = operands(words).value(0);
  if (name.isEmpty()) {
    call.printError(u"Error: package name not specified\n"_s);
    return kFailed;
  }
  QString failure = m_host.faults().uninstallFailure;
  std::optional<Package> package = m_packages.find(name);
  if (failure.isEmpty() && (!package || package->isSystem)) failure = u"DELETE_FAILED_INTERNAL_ERROR"_s;
  const bool keepsData = words.contains("-k"_L1);
  // A package with only its data left can still be uninstalled completely.
  if (failure.isEmpty() && !package->isInstalled && keepsData) failure = u"not installed for 0"_s;
  if (!failure.isEmpty()) {
    call.print(u"Failure [%1]\n"_s.arg(failure));
    return kFailed;
  }
  removeCode(*package);
  if (keepsData) {
    package->isInstalled = false;
    m_packages.put(*package);
  } else {
    removeData(name);
    m_packages.remove(name);
  }
  call.print(u"Success\n"_s);
  return 0;
}

int PackageManager::clear(Call& call, const QStringList& words) {
  const QString name = operands(words).value(0);
  const std::optional<Package> package = m_packages.find(name);
  if (!package || package->isSystem) {
    call.print(u"Failed\n"_s);
    return kFailed;
  }
  QDir(m_host.root() + "/data/data/"_L1 + name).removeRecursively();
  QDir(m_host.root() + "/storage/emulated/0/Android/data/"_L1 + name).removeRecursively();
  call.print(u"Success\n"_s);
  return 0;
}

void PackageManager::removeCode(const Package& package) {
  if (!package.isInstalled) return;
  const QString folder = m_host.root() + package.codePath;
  QDir(folder).removeRecursively();
  if (package.codePath.startsWith("/data/app/~~"_L1)) QDir().rmdir(folder.section(u'/', 0, -2));
}

void PackageManager::removeData(const QString& package) {
  const QString shared = m_host.root() + "/storage/emulated/0/Android/"_L1;
  for (const QString& folder :
       {m_host.root() + "/data/data/"_L1, shared + "data/"_L1, shared + "media/"_L1, shared + "obb/"_L1}) {
    QDir(folder + package).removeRecursively();
  }
}

}  // namespace orvanta::headset
