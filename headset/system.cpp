#include "system.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "dumpsys_package.h"
#include "package_manager.h"

namespace orvanta::headset {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kKibi = 1024;

/// 109G, 5.5G, 4.0K, 0: at most three digits, one decimal below ten.
QString humanSize(qint64 bytes) {
  if (bytes < kKibi) return QString::number(bytes);
  auto value = static_cast<double>(bytes);
  int unit = 0;
  while (value >= 999.5 && unit < 5) {
    value /= kKibi;
    ++unit;
  }
  const int decimals = value < 9.95 ? 1 : 0;
  return QString::number(value, 'f', decimals) + QChar::fromLatin1(" KMGTP"[unit]);
}

struct Mount {
  QString source;
  QString point;
  qint64 size;
  qint64 used;
  qint64 available;
};

/// The columns of the headset's df: the first at least 14 wide, the others as wide as needed.
QString storageTable(const QList<Mount>& mounts, bool human) {
  using Row = std::array<QString, 6>;
  const auto figure = [human](qint64 bytes) {
    return human ? humanSize(bytes) : QString::number((bytes + kKibi - 1) / kKibi);
  };
  QList<Row> rows = {Row{u"Filesystem"_s, human ? u"Size"_s : u"1K-blocks"_s, u"Used"_s,
                         human ? u"Avail"_s : u"Available"_s, u"Use%"_s, u"Mounted on"_s}};
  for (const Mount& mount : mounts) {
    const qint64 whole = mount.used + mount.available;
    const qint64 percent = whole == 0 ? 0 : (mount.used * 100 + whole - 1) / whole;
    rows.append(Row{mount.source, figure(mount.size), figure(mount.used), figure(mount.available),
                    QString::number(percent) + u'%', mount.point});
  }
  std::array<qsizetype, 5> widths = {mounts.isEmpty() ? 0 : 14, 0, 0, 0, 0};
  for (const Row& row : std::as_const(rows)) {
    for (std::size_t i = 0; i < widths.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  QString text;
  for (const Row& row : std::as_const(rows)) {
    text += row[0].leftJustified(widths[0]);
    for (std::size_t i = 1; i < widths.size(); ++i) text += u' ' + row[i].rightJustified(widths[i]);
    text += u' ' + row[5] + u'\n';
  }
  return text;
}

}  // namespace

System::System(SystemHost& host, Packages& packages, Properties& properties)
    : m_host(host), m_packages(packages), m_properties(properties) {}

int System::run(Call& call) {
  const QString& name = call.command;
  if (name == "pm"_L1) return PackageManager(m_host, m_packages).run(call);
  if (name == "cmd"_L1) {
    const QString service = call.arguments.isEmpty() ? QString() : call.arguments.takeFirst();
    if (service == "package"_L1) return PackageManager(m_host, m_packages).run(call);
    call.printError(u"cmd: Can't find service: %1\n"_s.arg(service));
    return 20;
  }
  if (name == "dumpsys"_L1) return dumpsys(call);
  if (name == "df"_L1) return df(call);
  if (name == "getprop"_L1) return getprop(call);
  if (name == "ip"_L1) return ip(call);
  if (name == "setprop"_L1) return setprop(call);
  if (name == "svc"_L1) return svc(call);
  if (name == "monkey"_L1) return monkey(call);
  if (name == "am"_L1) return am(call);
  if (name == "reboot"_L1) {
    m_host.reboot();
    return 0;
  }
  call.printError(u"cmd: Can't find service: %1\n"_s.arg(name));
  return 20;
}

int System::df(Call& call) {
  bool human = false;
  QStringList paths;
  for (const QString& word : std::as_const(call.arguments)) {
    if (word.startsWith(u'-')) {
      human = human || word.contains(u'h');
    } else {
      paths.append(word);
    }
  }
  const qint64 size = m_host.storageSize();
  const qint64 available = std::clamp<qint64>(m_host.bytesAvailable(), 0, size);
  const QList<Mount> all = {
      {u"/dev/block/dm-0"_s, u"/"_s, 1717986918, 1717986918, 0},
      {u"tmpfs"_s, u"/dev"_s, 2897215488, 1028096, 2896187392},
      {u"/dev/block/dm-2"_s, u"/data"_s, size, size - available, available},
      {u"/data/media"_s, u"/storage/emulated"_s, size, size - available, available},
  };
  QList<Mount> shown = paths.isEmpty() ? all : QList<Mount>();
  int code = 0;
  QString errors;
  for (const QString& path : std::as_const(paths)) {
    struct stat info {};
    if (m_host.files().stat(path.toUtf8(), true, &info) != 0) {
      errors += u"df: '%1': No such file or directory\n"_s.arg(path);
      code = 1;
      continue;
    }
    const QString where = QString::fromUtf8(m_host.files().canonical(path.toUtf8()));
    qsizetype best = 0;
    for (qsizetype i = 1; i < all.size(); ++i) {
      const QString& point = all[i].point;
      if (where == point || where.startsWith(point + u'/')) best = i;
    }
    shown.append(all[best]);
  }
  call.print(storageTable(shown, human));
  call.printError(errors);
  return code;
}

int System::ip(Call& call) {
  QStringList words = call.arguments;
  for (const QString& option : {u"-4"_s, u"-f"_s, u"inet"_s}) words.removeAll(option);
  const QString address = m_host.networkAddress();
  if (words.value(0).startsWith(u'r')) {
    const QString net = address.section(u'.', 0, 2) + u".0/24"_s;
    call.print(u"%1 dev wlan0 proto kernel scope link src %2 \n"_s.arg(net, address));
    return 0;
  }
  if (!words.value(0).startsWith(u'a')) {
    call.printError(u"Object \"%1\" is unknown, try \"ip help\".\n"_s.arg(words.value(0)));
    return 1;
  }
  call.print(
      u"1: lo: <LOOPBACK,UP,LOWER_UP> mtu 65536 qdisc noqueue state UNKNOWN group default qlen 1000\n"
      "    inet 127.0.0.1/8 scope host lo\n       valid_lft forever preferred_lft forever\n"
      "23: wlan0: <BROADCAST,MULTICAST,UP,LOWER_UP> mtu 1500 qdisc mq state UP group default qlen 3000\n"
      "    inet %1/24 brd %2.255 scope global wlan0\n       valid_lft forever preferred_lft forever\n"_s.arg(
          address, address.section(u'.', 0, 2)));
  return 0;
}

int System::getprop(Call& call) {
  if (!call.arguments.isEmpty()) {
    const QString value = m_properties.value(call.arguments.first());
    call.print((value.isEmpty() ? call.arguments.value(1) : value) + u'\n');
    return 0;
  }
  QString text;
  const QMap<QString, QString> all = m_properties.all();
  for (auto it = all.begin(); it != all.end(); ++it) text += u"[%1]: [%2]\n"_s.arg(it.key(), it.value());
  call.print(text);
  return 0;
}

int System::setprop(Call& call) {
  if (call.arguments.size() != 2) {
    call.printError(
        u"usage: setprop NAME VALUE\n\nSets an Android system property.\n\n"
        "setprop: Need 2 arguments\n"_s);
    return 1;
  }
  if (m_properties.set(call.arguments[0], call.arguments[1])) return 0;
  call.printError(
      u"setprop: failed to set property '%1' to '%2'\n"_s.arg(call.arguments[0], call.arguments[1]));
  return 1;
}

int System::svc(Call& call) {
  // svc usb setFunctions mtp true
  if (call.arguments.size() >= 3 && call.arguments[0] == "usb"_L1 && call.arguments[1] == "setFunctions"_L1) {
    m_properties.set(u"sys.usb.config"_s, call.arguments[2] + ",adb"_L1);
    return 0;
  }
  if (call.arguments.size() >= 2 && call.arguments[0] == "power"_L1 && call.arguments[1] == "reboot"_L1) {
    m_host.reboot();
    return 0;
  }
  call.printError(
      u"Available commands:\n    help     Show information about the subcommands\n"
      "    power    Control the power manager\n    usb      Control Usb state\n"_s);
  return call.arguments.isEmpty() ? 0 : 1;
}

int System::monkey(Call& call) {
  QStringList packages;
  QStringList categories;
  QString events;
  QString echo;
  for (const QString& word : std::as_const(call.arguments)) echo += u"  bash arg: %1\n"_s.arg(word);
  for (qsizetype i = 0; i < call.arguments.size(); ++i) {
    const QString& word = call.arguments[i];
    if (word == "-p"_L1) packages.append(call.arguments.value(++i));
    if (word == "-c"_L1) categories.append(call.arguments.value(++i));
    if (!word.startsWith(u'-')) events = word;
  }
  call.print(echo);
  if (events.toInt() <= 0) {
    call.printError(u"** Error: Invalid number for EVENT_COUNT\n"_s);
    return 251;
  }
  if (categories.isEmpty()) categories = {u"android.intent.category.LAUNCHER"_s};
  for (const QString& name : std::as_const(packages)) {
    const std::optional<Package> package = m_packages.find(name);
    if (!package || !package->isInstalled || !package->isEnabled) continue;
    const bool matches =
        std::any_of(categories.begin(), categories.end(),
                    [&package](const QString& category) { return package->categories.contains(category); });
    if (!matches) continue;
    call.print(
        u"Events injected: %1\n## Network stats: elapsed time=23ms (0ms mobile, 0ms wifi, 23ms not connected)\n"_s
            .arg(events));
    return 0;
  }
  call.print(u"** No activities found to run, monkey aborted.\n"_s);
  return 252;
}

int System::am(Call& call) {
  const QString verb = call.arguments.value(0);
  if (verb == "force-stop"_L1 || verb == "kill"_L1) return 0;
  if (verb == "start"_L1) {
    const qsizetype component = call.arguments.indexOf(u"-n"_s);
    const QString target = component < 0 ? QString() : call.arguments.value(component + 1);
    const std::optional<Package> package = m_packages.find(target.section(u'/', 0, 0));
    call.print(u"Starting: Intent { cmp=%1 }\n"_s.arg(target));
    if (package && package->isInstalled) return 0;
    call.printError(u"Error type 3\nError: Activity class {%1} does not exist.\n"_s.arg(target));
    return 1;
  }
  call.printError(u"Error: unknown command '%1'\n"_s.arg(verb));
  return 255;
}

int System::dumpsys(Call& call) {
  const QString service = call.arguments.value(0);
  if (service == "package"_L1 || service == "pm"_L1) {
    const QString name = call.arguments.value(1);
    if (name.isEmpty()) {
      call.print(packageReport(m_packages.all()));
      return 0;
    }
    const std::optional<Package> package = m_packages.find(name);
    call.print(package ? packageReport({*package}) : unknownPackageReport(name));
    return 0;
  }
  if (service == "-l"_L1) {
    call.print(u"Currently running services:\n  package\n"_s);
    return 0;
  }
  call.printError(u"Can't find service: %1\n"_s.arg(service));
  return 0;
}

}  // namespace orvanta::headset
