#include "backups/pull_plan.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSet>
#include <algorithm>

#include "adb/device_names.h"
#include "adb/lines.h"
#include "backups/backup_names.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr qsizetype longestLine = 6000;  // characters; Windows takes 32,767 in all

QString knownPath(const QString& onHeadset) {
  return onHeadset.startsWith(appFilesRoot) ? onHeadset.mid(appFilesRoot.size())
                                            : u"apk/"_s + onHeadset.section(u'/', -1);
}

bool isSame(const BackupFile& file, const DeviceFile& onDevice) {
  return file.size == onDevice.size && file.time == onDevice.time;
}

/// The files of one folder of the backup, as many together as fit into a line.
QList<QList<Wanted>> lineFuls(const QList<Wanted>& files) {
  QList<QList<Wanted>> lines;
  qsizetype length = 0;
  for (const Wanted& file : files) {
    if (lines.isEmpty() || length > longestLine) {
      lines << QList<Wanted>();
      length = 0;
    }
    lines.back() << file;
    length += file.from.path.size() + 3;
  }
  return lines;
}

}  // namespace

qint64 bytesOf(const QList<Wanted>& files) {
  qint64 sum = 0;
  for (const Wanted& file : files) sum += file.to.size;
  return sum;
}

QList<Wanted> wantedFiles(const AppState& state, const QStringList& refusals) {
  QList<Wanted> wanted;
  LocalPaths places;
  for (const QList<DeviceFile>* files : {&state.packageFiles, &state.expansionFiles, &state.data}) {
    for (const DeviceFile& file : *files) {
      Wanted one{file, {}};
      const QString known = knownPath(file.path);
      one.to.path = places.add(known);
      if (one.to.path != known) one.to.onHeadset = known;
      one.to.size = file.size;
      one.to.time = file.time;
      const bool refused = std::any_of(refusals.begin(), refusals.end(), [&file](const QString& line) {
        return line.contains(u'\'' + file.path + u'\'');
      });
      if (!refused) wanted << one;
    }
  }
  return wanted;
}

QStringList emptyFolders(const AppState& state) {
  QSet<QString> filled;
  const auto fillParents = [&filled](const QString& path) {
    for (QString folder = path.section(u'/', 0, -2); !folder.isEmpty() && !filled.contains(folder);
         folder = folder.section(u'/', 0, -2))
      filled << folder;
  };
  for (const QList<DeviceFile>* files : {&state.expansionFiles, &state.data})
    for (const DeviceFile& file : *files) fillParents(file.path);
  for (const QString& folder : state.folders) fillParents(folder);
  QStringList empty;
  for (const QString& folder : state.folders)
    if (!filled.contains(folder)) empty << knownPath(folder);
  empty.sort();
  return empty;
}

QList<Wanted> missingFiles(const QList<Wanted>& wanted, const KnownFiles& done) {
  QList<Wanted> lacking;
  for (const Wanted& file : wanted) {
    const auto there = done.constFind(file.to.known());
    const bool same = there != done.constEnd() && there->path == file.to.path && isSame(*there, file.from);
    if (!same) lacking << file;
  }
  return lacking;
}

QList<Pull> pullsFor(const QString& backup, const QString& package, const QList<Wanted>& wanted,
                     const QList<Wanted>& missing) {
  const auto local = [&backup](const QString& path) {
    return QDir::toNativeSeparators(backup + u'/' + path);
  };
  QList<Pull> pulls;
  QSet<QString> whole;
  for (const QString& part : {u"obb"_s, u"data"_s}) {
    const QString place = part + u'/' + package;
    const auto inPart = [&part](const Wanted& file) { return file.to.part() == part; };
    const bool sameNames = std::none_of(wanted.begin(), wanted.end(), [&](const Wanted& file) {
      return inPart(file) && !file.to.onHeadset.isEmpty();
    });
    Pull folder;
    std::copy_if(missing.begin(), missing.end(), std::back_inserter(folder.files), inPart);
    const auto all = std::count_if(wanted.begin(), wanted.end(), inPart);
    if (all == 0 || folder.files.size() != all || !sameNames || QFileInfo::exists(local(place))) continue;
    QDir().mkpath(backup + u'/' + part);
    folder.line = pullLine(Host::current(), appFilesRoot + place, local(place));
    pulls << folder;
    whole << part;
  }
  QMap<QString, QList<Wanted>> folders;
  for (const Wanted& file : missing) {
    if (whole.contains(file.to.part())) continue;
    const QString folder = file.to.path.section(u'/', 0, -2);
    QDir().mkpath(backup + u'/' + folder);
    QFile::remove(backup + u'/' + file.to.path);
    if (file.to.onHeadset.isEmpty()) {
      folders[folder] << file;
    } else {
      pulls << Pull{pullLine(Host::current(), file.from.path, local(file.to.path)), {file}};
    }
  }
  for (auto folder = folders.cbegin(); folder != folders.cend(); ++folder) {
    for (const QList<Wanted>& files : lineFuls(folder.value())) {
      QStringList paths;
      for (const Wanted& file : files) paths << file.from.path;
      pulls << Pull{pullFilesLine(Host::current(), paths, local(folder.key())), files};
    }
  }
  // The packages first: without them the rest is of little use. The data last, as it changes most.
  const QStringList order = {u"apk"_s, u"obb"_s, u"data"_s};
  const auto rank = [&order](const Pull& pull) { return order.indexOf(pull.files.constFirst().to.part()); };
  std::stable_sort(pulls.begin(), pulls.end(),
                   [&rank](const Pull& a, const Pull& b) { return rank(a) < rank(b); });
  return pulls;
}

}  // namespace orvanta
