#include "backups/app_backup.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStorageInfo>
#include <algorithm>

#include "adb/device_names.h"
#include "adb/lines.h"
#include "adb/replies.h"
#include "adb/storage.h"
#include "backups/backup_names.h"
#include "core/workbench.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int progressMilliseconds = 200;
constexpr qint64 betweenRecords = 5000;  // milliseconds
constexpr qsizetype longestLine = 6000;  // characters; Windows takes 32,767 in all
constexpr int tries = 3;
const QString storageRoot = u"/sdcard/Android/"_s;

QString knownPath(const DeviceFile& file) {
  return file.path.startsWith(storageRoot) ? file.path.mid(storageRoot.size())
                                           : u"apk/"_s + file.path.section(u'/', -1);
}

bool isSame(const BackupFile& file, const DeviceFile& onDevice) {
  return file.size == onDevice.size && file.time == onDevice.time;
}

qint64 bytesOf(const auto& files) {
  qint64 sum = 0;
  for (const auto& file : files) sum += file.to.size;
  return sum;
}

bool isOthers(const QString& folder) {
  const QList<QJsonObject> notes = notesOfOthers();
  return std::any_of(notes.begin(), notes.end(), [&folder](const QJsonObject& note) {
    return note[u"kind"].toString() == BackupRun::noteKind && note[u"folder"].toString() == folder;
  });
}

}  // namespace

const QString BackupRun::noteKind = u"wholeBackup"_s;

Settled BackupRun::settle(const QJsonObject& note) {
  const QString folder = note[u"folder"].toString();
  if (!QFile::exists(folder + u'/' + recordName)) return {};
  return {
      true,
      inFace(
          u"上次运行中断，备份没有完成，再备份到同一文件夹会接着进行"_s,
          u"An earlier run was cut short; its backup is not complete, and another one to the same folder goes on with it"_s) +
          u": "_s + folder};
}

BackupRun::BackupRun(Workbench& bench, DOSOutputs& runner, QString parent, HeadsetIdentity headset)
    : m_bench(bench), m_runner(runner), m_parent(std::move(parent)), m_headset(std::move(headset)) {
  m_tick.setInterval(progressMilliseconds);
  connect(&m_tick, &QTimer::timeout, this, &BackupRun::tick);
  // A tool that starts takes the figures of the one before out of view.
  connect(&bench.turn, &Turn::toolStarted, this, &BackupRun::report);
  connect(&bench.turn, &Turn::stopRequested, this, [this] {
    if (m_check) m_check->stop();
  });
}

QCoro::Task<QList<BackupOutcome>> BackupRun::save(QList<AppToSave> apps) {
  QList<BackupOutcome> outcomes;
  QDirIterator folders(m_parent, QDir::Dirs | QDir::NoDotAndDotDot);
  while (folders.hasNext()) {
    const QString folder = folders.next();
    if (!QFile::exists(folder + u'/' + recordName) || QFile::exists(folder + u'/' + manifestName)) continue;
    const auto record = manifestIn(folder, recordName);
    if (const auto* manifest = std::get_if<BackupManifest>(&record)) m_brokenOff[manifest->package] << folder;
  }
  for (const AppToSave& app : apps) m_later += app.estimate;
  m_tick.start();
  for (qsizetype i = 0; i < apps.size(); ++i) {
    const AppToSave app = apps[i];
    m_later -= app.estimate;
    m_appBytes = app.estimate;
    if (onApp) onApp(static_cast<int>(outcomes.size()) + 1, app);
    BackupOutcome outcome = co_await saveOne(app, apps.value(i + 1).package);
    m_saved += outcome.bytes;
    m_appBytes = 0;
    m_done.clear();
    m_bench.say(outcome.text());
    const bool ends = outcome.endsRun();
    outcomes << outcome;
    if (ends) break;
  }
  m_ahead.reset();
  m_tick.stop();
  co_return outcomes;
}

QCoro::Task<BackupOutcome> BackupRun::saveOne(AppToSave app, QString next) {
  BackupOutcome outcome;
  outcome.app = app;
  outcome.kind = BackupOutcome::Kind::UnfitName;
  if (app.package.isEmpty() || !isFitPackageName(app.package)) co_return outcome;
  const AppState state = co_await ask(app.package);
  outcome.kind = BackupOutcome::Kind::Stopped;
  if (m_bench.turn.stopped()) co_return outcome;
  outcome.words = state.whole ? QString() : tellingLine(m_reply);
  outcome.kind = state.whole ? BackupOutcome::Kind::NotInstalled : BackupOutcome::Kind::Lost;
  // Of an app that was removed without its data, the data is worth saving.
  const bool nothing = state.packageFiles.isEmpty() && state.expansionFiles.isEmpty() && state.data.isEmpty();
  if (!state.whole || nothing) co_return outcome;

  m_next = next;
  if (!next.isEmpty() && isFitPackageName(next))
    m_ahead = std::make_unique<AskedAhead>(m_bench.turn, appStateLine(Host::current(), next));

  m_manifest = {};
  m_manifest.package = app.package;
  m_manifest.label = app.label;
  m_manifest.version = state.version;
  m_manifest.build = state.build;
  m_manifest.date = QDateTime::currentDateTime();
  m_manifest.headsetModel = m_headset.model;
  m_manifest.headsetSerial = m_headset.serial;
  m_folder = folderFor(state);
  const bool goesOn = !m_folder.isEmpty();
  if (!goesOn)
    m_folder =
        freeFolder(m_parent, backupFolderName(app.label.isEmpty() ? app.package : app.label, state.version,
                                              state.build, m_manifest.date.toString(u"yyyy-MM-dd"_s)));
  outcome.folder = m_folder;
  JournalEntry note({{u"kind"_s, BackupRun::noteKind}, {u"folder"_s, m_folder}});
  if (goesOn) co_await takeOver(m_folder);
  outcome = co_await saveInto(state, outcome);
  if (outcome.kind != BackupOutcome::Kind::Saved && !m_done.isEmpty()) keepRecord();
  note.clear();
  co_return outcome;
}

QCoro::Task<AppState> BackupRun::ask(QString package) {
  if (m_ahead && m_next == package) {
    m_reply = co_await m_ahead->reply();
    m_ahead.reset();
  } else {
    m_reply = co_await m_runner.ExecuteCommand(appStateLine(Host::current(), package));
  }
  m_reply = withoutServerNotes(m_reply);
  AppState state = appStateIn(m_reply, package);
  co_return state;
}

/// A folder with an unfinished backup of the same build of this app from this headset; may be empty.
QString BackupRun::folderFor(const AppState& state) {
  const QStringList folders = m_brokenOff.value(m_manifest.package);
  for (const QString& folder : folders) {
    const auto record = manifestIn(folder, recordName);
    const auto* manifest = std::get_if<BackupManifest>(&record);
    if (manifest != nullptr && manifest->build == state.build &&
        manifest->headsetSerial == m_headset.serial && !isOthers(folder))
      return folder;
  }
  return {};
}

/// Takes what a run before has brought, as far as it is still what it was.
QCoro::Task<> BackupRun::takeOver(QString folder) {
  const auto record = manifestIn(folder, recordName);
  const auto* earlier = std::get_if<BackupManifest>(&record);
  if (earlier == nullptr) co_return;
  m_manifest.date = earlier->date;
  QList<HashedFile> files;
  for (const BackupFile& file : earlier->files)
    files << HashedFile{folder + u'/' + file.path, file.size, file.sha256};
  m_check = std::make_unique<FileCheck>(files);
  m_bench.turn.noteToolStarted(u"SHA-256"_s);
  const QList<FileCheck::Finding> findings = co_await m_check->findings();
  m_bench.turn.noteToolEnded();
  m_check.reset();
  // After a stop nothing is known of them, and the record stays.
  if (m_bench.turn.stopped()) co_return;
  QSet<QString> changed;
  for (const FileCheck::Finding& finding : findings) changed << finding.path;
  for (const BackupFile& file : earlier->files)
    if (!changed.contains(folder + u'/' + file.path)) m_done.insert(file.known(), file);
}

QCoro::Task<BackupOutcome> BackupRun::saveInto(AppState state, BackupOutcome outcome) {
  using Kind = BackupOutcome::Kind;
  const bool stoppedBefore = m_bench.turn.stopped();
  outcome.kind = stoppedBefore ? Kind::Stopped : Kind::NotWritable;
  outcome.words = stoppedBefore ? QString() : m_parent;
  if (stoppedBefore || m_folder.isEmpty()) co_return outcome;
  outcome.words.clear();
  QList<Wanted> wanted;
  const bool installed = !state.packageFiles.isEmpty();
  for (int i = 0; i < tries; ++i) {
    wanted = wantedOf(state);
    m_appBytes = bytesOf(wanted);
    m_manifest.unreadable = state.complaints;
    const QList<Wanted> lacking = missing(wanted);
    if (lacking.isEmpty()) break;
    outcome.kind = Kind::NoRoom;
    const QStorageInfo disk(m_parent);
    if (disk.isValid() && disk.bytesAvailable() < bytesOf(lacking)) {
      outcome.words =
          inFace(u"需要 %1，可用 %2"_s, u"%1 needed, %2 free"_s, u"需要 %1，可用 %2 (needed, free)"_s)
              .arg(readableSize(bytesOf(lacking)), readableSize(disk.bytesAvailable()));
      co_return outcome;
    }
    outcome.kind = Kind::NotWritable;
    outcome.words = m_folder;
    m_manifest.files = m_done.values();
    if (!QDir().mkpath(m_folder) || !writeRecord(m_folder, m_manifest)) co_return outcome;
    m_recorded.start();
    outcome.words.clear();
    const QList<Pull> pulls = pullsFor(wanted, lacking);
    for (const Pull& next : pulls) {
      co_await pull(next);
      outcome.kind = Kind::Stopped;
      if (m_bench.turn.stopped()) co_return outcome;
      outcome.kind = Kind::NoRoom;
      outcome.words = tellingLine(withoutProgress(m_reply));
      if (m_reply.contains("No space left"_L1) || m_reply.contains("Disk quota exceeded"_L1))
        co_return outcome;
      noteUnreadable(wanted);
    }
    if (missing(wanted).isEmpty()) break;
    // The app has written meanwhile, or is gone, or the headset is.
    const QString words = outcome.words;
    const QStringList unreadable = m_manifest.unreadable;
    state = co_await ask(m_manifest.package);
    outcome.kind = m_bench.turn.stopped() ? Kind::Stopped : Kind::Lost;
    outcome.words = words;
    if (!state.whole) co_return outcome;
    outcome.kind = Kind::NotInstalled;
    if (installed && state.packageFiles.isEmpty()) co_return outcome;
    outcome.kind = Kind::Incomplete;
    outcome.words = inFace(u"应用被更新了"_s, u"the app was updated meanwhile"_s);
    if (state.build != m_manifest.build) co_return outcome;
    state.complaints += unreadable;
    state.complaints.removeDuplicates();
  }
  QStringList names;
  for (const Wanted& file : missing(wanted)) names << file.from.path;
  outcome.kind = Kind::Incomplete;
  outcome.words = someNames(names);
  if (!names.isEmpty()) co_return outcome;
  m_manifest.files.clear();
  for (const Wanted& file : wanted) m_manifest.files << m_done.value(file.to.known());
  outcome.kind = Kind::NotWritable;
  outcome.words = m_folder;
  if (!writeManifest(m_folder, m_manifest)) co_return outcome;
  QFile::remove(m_folder + u'/' + recordName);
  outcome.kind = Kind::Saved;
  outcome.words =
      installed ? QString()
                : inFace(u"没有安装包，只剩数据"_s, u"no package on the headset, only what it has left"_s);
  outcome.unreadable = m_manifest.unreadable;
  outcome.files = wanted.size();
  outcome.bytes = bytesOf(wanted);
  co_return outcome;
}

QList<BackupRun::Wanted> BackupRun::wantedOf(const AppState& state) const {
  QList<Wanted> wanted;
  LocalPaths places;
  for (const QList<DeviceFile>* files : {&state.packageFiles, &state.expansionFiles, &state.data}) {
    for (const DeviceFile& file : *files) {
      Wanted one{file, {}};
      const QString known = knownPath(file);
      one.to.path = places.add(known);
      if (one.to.path != known) one.to.onHeadset = known;
      one.to.size = file.size;
      one.to.time = file.time;
      const bool refused =
          std::any_of(m_manifest.unreadable.begin(), m_manifest.unreadable.end(),
                      [&file](const QString& line) { return line.contains(u'\'' + file.path + u'\''); });
      if (!refused) wanted << one;
    }
  }
  return wanted;
}

QList<BackupRun::Wanted> BackupRun::missing(const QList<Wanted>& wanted) const {
  QList<Wanted> lacking;
  for (const Wanted& file : wanted) {
    const auto done = m_done.constFind(file.to.known());
    const bool there = done != m_done.constEnd() && done->path == file.to.path && isSame(*done, file.from);
    if (!there) lacking << file;
  }
  return lacking;
}

/// A folder of which nothing is there yet comes in one piece; else the files that lack, those of one folder
/// together.
QList<BackupRun::Pull> BackupRun::pullsFor(const QList<Wanted>& wanted, const QList<Wanted>& lacking) const {
  const Host host = Host::current();
  const auto local = [this](const QString& path) { return QDir::toNativeSeparators(m_folder + u'/' + path); };
  QList<Pull> pulls;
  QSet<QString> whole;
  for (const QString& part : {u"obb"_s, u"data"_s}) {
    const QString place = part + u'/' + m_manifest.package;
    const auto inPart = [&part](const Wanted& file) { return file.to.part() == part; };
    const bool sameNames = std::none_of(wanted.begin(), wanted.end(), [&](const Wanted& file) {
      return inPart(file) && !file.to.onHeadset.isEmpty();
    });
    Pull folder;
    std::copy_if(lacking.begin(), lacking.end(), std::back_inserter(folder.files), inPart);
    const auto all = std::count_if(wanted.begin(), wanted.end(), inPart);
    if (all == 0 || folder.files.size() != all || !sameNames || QFileInfo::exists(local(place))) continue;
    QDir().mkpath(m_folder + u'/' + part);
    folder.line = pullLine(host, storageRoot + place, local(place));
    pulls << folder;
    whole << part;
  }
  QMap<QString, QList<Wanted>> folders;
  QList<Pull> singles;
  for (const Wanted& file : lacking) {
    if (whole.contains(file.to.part())) continue;
    const QString folder = file.to.path.section(u'/', 0, -2);
    QDir().mkpath(m_folder + u'/' + folder);
    // What a broken run has left there is not the file.
    QFile::remove(m_folder + u'/' + file.to.path);
    if (file.to.onHeadset.isEmpty()) {
      folders[folder] << file;
    } else {
      singles << Pull{pullLine(host, file.from.path, local(file.to.path)), {file}};
    }
  }
  for (auto folder = folders.cbegin(); folder != folders.cend(); ++folder) {
    Pull next;
    QStringList paths;
    qsizetype length = 0;
    for (const Wanted& file : folder.value()) {
      if (length > longestLine) {
        singles << Pull{pullFilesLine(host, paths, local(folder.key())), next.files};
        next.files.clear();
        paths.clear();
        length = 0;
      }
      next.files << file;
      paths << file.from.path;
      length += file.from.path.size() + 3;
    }
    singles << Pull{pullFilesLine(host, paths, local(folder.key())), next.files};
  }
  pulls += singles;
  // The packages first: without them the rest is of little use. The data last, as it changes most.
  const QStringList order = {u"apk"_s, u"obb"_s, u"data"_s};
  const auto rank = [&order](const Pull& next) { return order.indexOf(next.files.constFirst().to.part()); };
  std::stable_sort(pulls.begin(), pulls.end(),
                   [&rank](const Pull& a, const Pull& b) { return rank(a) < rank(b); });
  return pulls;
}

QCoro::Task<> BackupRun::pull(Pull next) {
  QList<ExpectedFile> expected;
  for (const Wanted& file : next.files) {
    const QString path = m_folder + u'/' + file.to.path;
    expected << ExpectedFile{path, file.from.size};
    m_coming.insert(path, file);
  }
  m_hashes = std::make_unique<FollowingHashes>(expected);
  m_reply = co_await m_runner.ExecuteCommand(next.line);
  m_reply = withoutServerNotes(m_reply);
  const QHash<QString, QByteArray> hashes = co_await m_hashes->finish();
  noteDone();
  // A file can have grown after its hash was complete.
  for (auto hash = hashes.cbegin(); hash != hashes.cend(); ++hash) {
    const Wanted file = m_coming.value(hash.key());
    if (QFileInfo(hash.key()).size() != file.from.size) m_done.remove(file.to.known());
  }
  m_hashes.reset();
  m_coming.clear();
}

/// Files that the headset lists and does not give are told of; the rest is still a backup.
void BackupRun::noteUnreadable(QList<Wanted>& wanted) {
  if (!m_reply.contains("Permission denied"_L1)) return;
  const QStringList lines = m_reply.split(u'\n');
  for (const Wanted& file : missing(wanted)) {
    const QString mark = u'\'' + file.from.path + u'\'';
    const auto told = std::find_if(lines.begin(), lines.end(), [&mark](const QString& line) {
      return line.contains(mark) && line.contains("Permission denied"_L1);
    });
    // Where the desktop refuses, it is not the headset.
    if (told == lines.end() || told->contains("cannot "_L1)) continue;
    m_manifest.unreadable << told->trimmed();
    wanted.removeIf([&file](const Wanted& one) { return one.from.path == file.from.path; });
  }
}

void BackupRun::noteDone() {
  const QHash<QString, QByteArray> hashes = m_hashes->complete();
  for (auto hash = hashes.cbegin(); hash != hashes.cend(); ++hash) {
    BackupFile file = m_coming.value(hash.key()).to;
    file.sha256 = hash.value();
    m_done.insert(file.known(), file);
  }
}

/// Writes down what has come, so that a run that dies here does not have to begin anew.
void BackupRun::keepRecord() {
  m_manifest.files = m_done.values();
  writeRecord(m_folder, m_manifest);
  m_recorded.restart();
}

void BackupRun::tick() {
  report();
  if (!m_hashes || m_recorded.elapsed() < betweenRecords) return;
  noteDone();
  keepRecord();
}

void BackupRun::report() {
  qint64 here = m_check ? m_check->bytes() : 0;
  for (const BackupFile& file : std::as_const(m_done)) here += file.size;
  if (m_hashes) {
    here += m_hashes->bytes();
    // What is complete is counted in both.
    for (const Wanted& file : std::as_const(m_coming))
      if (m_done.contains(file.to.known())) here -= file.to.size;
  }
  m_bench.turn.noteProgress(m_saved + std::min(here, m_appBytes), m_saved + m_appBytes + m_later);
}

}  // namespace orvanta
