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
#include "backups/on_disk.h"
#include "core/workbench.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int progressMilliseconds = 200;
constexpr qint64 betweenRecords = 5000;  // milliseconds
constexpr int tries = 3;
const QString dateFormat = u"yyyy-MM-dd"_s;
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
  // The busy strip drops the figures when a tool starts; this puts them back.
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
  // The data of an app that was removed without it is still worth saving.
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
  const bool isThere = co_await findUnchanged(state);
  outcome.kind = isThere ? BackupOutcome::Kind::Saved : BackupOutcome::Kind::Stopped;
  if (isThere) {
    outcome.folder = m_folder;
    outcome.words = inFace(u"已有，没有变化"_s, u"already there, unchanged"_s);
    outcome.unreadable = m_manifest.unreadable;
    outcome.files = m_done.size();
    for (const BackupFile& file : std::as_const(m_done)) outcome.bytes += file.size;
  }
  if (isThere || m_bench.turn.stopped()) co_return outcome;
  m_folder = folderFor(state);
  const bool goesOn = !m_folder.isEmpty();
  if (!goesOn) m_folder = freeFolder(m_parent, folderName());
  outcome.folder = m_folder;
  JournalEntry note({{u"kind"_s, BackupRun::noteKind}, {u"folder"_s, m_folder}});
  if (goesOn) co_await takeOver(m_folder, recordName);
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
        manifest->headsetSerial == m_headset.serial && !isOthers(folder)) {
      m_manifest.date = manifest->date;
      return folder;
    }
  }
  return {};
}

QString BackupRun::folderName() const {
  return backupFolderName(m_manifest.name(), m_manifest.version, m_manifest.build,
                          m_manifest.date.toString(dateFormat));
}

/// Whether there is a whole backup of the app as it is now: after a run that broke off, the apps before the
/// break need not come again. It is in `m_folder` then, its files in `m_done`.
QCoro::Task<bool> BackupRun::findUnchanged(AppState state) {
  const QString beginning = folderName().chopped(dateFormat.size());
  const QStringList names = QDir(m_parent).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
  for (const QString& name : names) {
    if (!name.startsWith(beginning)) continue;
    m_folder = m_parent + u'/' + name;
    const auto read = manifestIn(m_folder, manifestName);
    const auto* manifest = std::get_if<BackupManifest>(&read);
    if (manifest == nullptr || manifest->package != m_manifest.package ||
        manifest->headsetSerial != m_headset.serial)
      continue;
    const QList<Wanted> wanted = wantedFiles(state, manifest->unreadable);
    KnownFiles files;
    for (const BackupFile& file : manifest->files) files.insert(file.known(), file);
    const bool same = wanted.size() == manifest->files.size() && missingFiles(wanted, files).isEmpty() &&
                      manifest->emptyFolders == emptyFolders(state);
    if (!same) continue;
    m_appBytes = bytesOf(wanted);
    co_await takeOver(m_folder, manifestName);
    if (m_bench.turn.stopped()) co_return false;
    m_manifest.unreadable = manifest->unreadable;
    if (missingFiles(wanted, m_done).isEmpty()) co_return true;
    m_done.clear();
  }
  co_return false;
}

/// Keeps what an earlier run has brought, as far as it is unchanged. `name` is that of its manifest.
QCoro::Task<> BackupRun::takeOver(QString folder, QString name) {
  const auto record = manifestIn(folder, name);
  const auto* earlier = std::get_if<BackupManifest>(&record);
  if (earlier == nullptr) co_return;
  QList<HashedFile> files;
  for (const BackupFile& file : earlier->files)
    files << HashedFile{folder + u'/' + file.path, file.size, file.sha256};
  m_check = std::make_unique<FileCheck>(files);
  m_bench.turn.noteToolStarted(u"SHA-256"_s);
  const QList<FileCheck::Finding> findings = co_await m_check->findings();
  m_bench.turn.noteToolEnded();
  m_check.reset();
  // After a stop nothing is known about the files, so the record stays as it is.
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
    m_manifest.unreadable = state.complaints;
    m_manifest.emptyFolders = emptyFolders(state);
    wanted = wantedFiles(state, m_manifest.unreadable);
    m_appBytes = bytesOf(wanted);
    const QList<Wanted> lacking = missingFiles(wanted, m_done);
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
    const QList<Pull> pulls = pullsFor(m_folder, m_manifest.package, wanted, lacking);
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
    if (missingFiles(wanted, m_done).isEmpty()) break;
    // Either the app has written in the meantime, or the app or the headset is gone.
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
  for (const Wanted& file : missingFiles(wanted, m_done)) names << file.from.path;
  outcome.kind = Kind::Incomplete;
  outcome.words = someNames(names);
  if (!names.isEmpty()) co_return outcome;
  m_manifest.files.clear();
  for (const Wanted& file : wanted) m_manifest.files << m_done.value(file.to.known());
  outcome.kind = Kind::NotWritable;
  outcome.words = m_folder;
  // The manifest vouches for the files, so it must not reach the disk before them.
  if (!QDir().mkpath(m_folder)) co_return outcome;
  const bool synced = co_await isOnDisk(m_folder);
  if (!synced || !writeManifest(m_folder, m_manifest)) co_return outcome;
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

/// Notes the files that the headset lists but does not hand over; the rest is still a backup.
void BackupRun::noteUnreadable(QList<Wanted>& wanted) {
  if (!m_reply.contains("Permission denied"_L1)) return;
  const QStringList lines = m_reply.split(u'\n');
  for (const Wanted& file : missingFiles(wanted, m_done)) {
    const QString mark = u'\'' + file.from.path + u'\'';
    const auto told = std::find_if(lines.begin(), lines.end(), [&mark](const QString& line) {
      return line.contains(mark) && line.contains("Permission denied"_L1);
    });
    // "cannot create" and the like come from this computer, not from the headset.
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

/// Writes down what has come, so that the next run need not start over if this one dies.
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
    // Complete files have been counted twice.
    for (const Wanted& file : std::as_const(m_coming))
      if (m_done.contains(file.to.known())) here -= file.to.size;
  }
  m_bench.turn.noteProgress(m_saved + std::min(here, m_appBytes), m_saved + m_appBytes + m_later);
}

}  // namespace orvanta
