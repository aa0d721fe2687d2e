#include "backups/app_restore.h"

#include <QDir>
#include <QDirIterator>
#include <QSet>
#include <algorithm>
#include <array>

#include "adb/device_names.h"
#include "adb/lines.h"
#include "adb/outcome.h"
#include "adb/replies.h"
#include "apk/badging.h"
#include "core/workbench.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int progressMilliseconds = 200;
// What adb reads for itself when it starts: while it has read no more, nothing is known of the files.
constexpr qint64 ownReading = 16 * 1024;
constexpr qsizetype foldersPerCall = 30;

qint64 filesBelow(const QString& folder) {
  qint64 count = 0;
  QDirIterator files(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
  for (; files.hasNext(); files.next()) ++count;
  return count;
}

/// The folder on the desktop that holds exactly these files, laid out as below the app's folder on the
/// headset; empty if they have to be sent one by one.
QString folderToPush(const SavedApp& saved, const QList<BackupFile>& files, const QString& part) {
  const QString onHeadset = part + u'/' + saved.manifest.package + u'/';
  QString folder;
  for (const BackupFile& file : files) {
    const QString below = u'/' + file.known().mid(onHeadset.size());
    const QString path = saved.pathOf(file);
    if (!path.endsWith(below)) return {};
    const QString root = path.chopped(below.size());
    if (folder.isEmpty()) folder = root;
    if (folder != root) return {};
  }
  return filesBelow(folder) == files.size() ? folder : QString();
}

}  // namespace

RestoreRun::RestoreRun(Workbench& bench, DOSOutputs& runner) : m_bench(bench), m_runner(runner) {
  m_tick.setInterval(progressMilliseconds);
  connect(&m_tick, &QTimer::timeout, this, &RestoreRun::report);
  connect(&bench.turn, &Turn::stopRequested, this, [this] {
    if (m_check) m_check->stop();
  });
}

void RestoreRun::report() {
  qint64 now = m_check ? m_check->bytes() : 0;
  if (m_sending > 0) {
    const qint64 read = m_runner.bytesRead().value_or(0);
    if (read <= ownReading) return;
    now = std::min(read, m_sending);
  }
  if (m_all > 0) m_bench.turn.noteProgress(m_done + now, m_all);
}

/// Runs a line that sends files of so many bytes together.
QCoro::Task<QString> RestoreRun::send(QString line, qint64 bytes) {
  m_sending = bytes;
  QString reply = co_await run(line);
  m_sending = 0;
  m_done += bytes;
  co_return reply;
}

QCoro::Task<QString> RestoreRun::run(QString line) {
  m_reply = co_await m_runner.ExecuteCommand(line);
  m_reply = withoutServerNotes(m_reply);
  QString reply = m_reply;
  co_return reply;
}

QCoro::Task<bool> RestoreRun::agreed(QString text, bool risky) {
  MessageBox box;
  box.text = text;
  box.title = inFace(u"还原备份"_s, u"Restore"_s, u"还原备份"_s);
  box.icon = risky ? BoxIcon::Warning : BoxIcon::Question;
  box.buttons = BoxButtons::YesNo;
  box.preselected = risky ? BoxAnswer::No : BoxAnswer::Yes;
  m_bench.turn.noteQuestion();
  const BoxAnswer answer = co_await m_bench.desktop.showBox(box);
  co_return answer == BoxAnswer::Yes;
}

RestoreOutcome RestoreRun::ended(const SavedApp& saved) const {
  return {false, true, u"✗ "_s + saved.title() + u": "_s + inFace(u"已停止"_s, u"stopped"_s)};
}

QCoro::Task<QList<RestoreOutcome>> RestoreRun::check(QList<SavedApp> backups) {
  QList<RestoreOutcome> outcomes;
  m_done = 0;
  m_all = 0;
  for (const SavedApp& saved : backups)
    if (saved.kind == SavedApp::Kind::Whole) m_all += saved.manifest.bytes();
  m_bench.turn.noteToolStarted(u"SHA-256"_s);
  m_tick.start();
  for (const SavedApp& saved : backups) {
    RestoreOutcome outcome = co_await checkOne(saved);
    if (saved.kind == SavedApp::Kind::Whole) m_done += saved.manifest.bytes();
    const bool ends = outcome.ends;
    outcomes << outcome;
    if (ends) break;
  }
  m_tick.stop();
  m_bench.turn.noteToolEnded();
  co_return outcomes;
}

QCoro::Task<RestoreOutcome> RestoreRun::checkOne(SavedApp saved) {
  RestoreOutcome outcome;
  if (!saved.isUsable()) {
    outcome.text = u"✗ "_s + saved.title() + u": "_s + saved.problem.shown();
    co_return outcome;
  }
  m_check = std::make_unique<FileCheck>(saved.hashedFiles());
  const QList<FileCheck::Finding> findings = co_await m_check->findings();
  m_check.reset();
  if (m_bench.turn.stopped()) {
    outcome = ended(saved);
    co_return outcome;
  }
  outcome.good = findings.isEmpty();
  outcome.text = (outcome.good ? u"✓ "_s : u"✗ "_s) + saved.title();
  if (!outcome.good) {
    QStringList faults;
    for (const FileCheck::Finding& finding : findings)
      faults << finding.path.mid(saved.folder.size() + 1) + u' ' + finding.fault.shown();
    outcome.text += u": "_s + firstFew(faults).join(u"; "_s);
  } else if (saved.kind == SavedApp::Kind::Whole) {
    outcome.text += u": "_s + inFace(u"%1 个文件，%2"_s, u"%1 files, %2"_s, u"%1 files, %2"_s)
                                  .arg(saved.manifest.files.size())
                                  .arg(readableSize(saved.manifest.bytes()));
  } else {
    outcome.text += u": "_s + inFace(u"没有清单，只知道文件在"_s,
                                     u"without a manifest; all that is known is that the files are there"_s);
  }
  co_return outcome;
}

QCoro::Task<QList<RestoreOutcome>> RestoreRun::restore(QList<SavedApp> backups) {
  QList<RestoreOutcome> outcomes;
  backups = co_await joinedCopies(backups);
  m_count = backups.size();
  const bool several = backups.size() > 1;
  int number = 0;
  if (several) {
    QString text = inFace(u"还原这 %1 个备份？"_s, u"Restore these %1 backups?"_s)
                       .replace(u"%1"_s, QString::number(backups.size())) +
                   u"\r\n"_s;
    for (const SavedApp& saved : backups) text += u"\r\n"_s + saved.title();
    const bool yes = co_await agreed(text, false);
    if (!yes) co_return outcomes;
  }
  m_sentBefore = 0;
  m_toSend = 0;
  for (const SavedApp& saved : backups) m_toSend += saved.manifest.bytes();
  for (const SavedApp& saved : backups) {
    if (onBackup) onBackup(++number, saved);
    RestoreOutcome outcome = co_await restoreOne(saved, several);
    m_sentBefore += saved.manifest.bytes();
    const bool ends = outcome.ends;
    if (!outcome.text.isEmpty()) {
      m_bench.say(outcome.text);
      outcomes << outcome;
    }
    if (ends) break;
  }
  co_return outcomes;
}

/// A package file and the folder beside it that has its package's name are one backup.
QCoro::Task<QList<SavedApp>> RestoreRun::joinedCopies(QList<SavedApp> backups) {
  QSet<QString> taken;
  for (SavedApp& saved : backups) {
    if (saved.kind != SavedApp::Kind::Package) continue;
    saved = co_await identified(saved);
    if (!saved.manifest.package.isEmpty()) taken << saved.folder + u'/' + saved.manifest.package;
  }
  backups.removeIf([&taken](const SavedApp& saved) {
    return saved.kind == SavedApp::Kind::ExpansionFiles &&
           taken.contains(saved.folder + u'/' + saved.manifest.package);
  });
  co_return backups;
}

/// Reads the package file, which must be of the manifest's app. Fills in what a backup without a manifest
/// does not say.
QCoro::Task<SavedApp> RestoreRun::identified(SavedApp saved) {
  if (saved.basePath().isEmpty()) co_return saved;
  const QString line = badgingLine(Host::current(), QDir::toNativeSeparators(saved.basePath()));
  const QString output = co_await run(line);
  std::array<QString, 51> fields;
  int permissions = 0;
  readBadging(output, fields, permissions);
  const QString& package = fields[1];
  BackupManifest& manifest = saved.manifest;
  if (package.isEmpty()) {
    saved.problem = {u"不是可读的安装包"_s, u"the package file cannot be read"_s};
  } else if (!isFitPackageName(package)) {
    saved.problem = {u"包名不可用"_s, u"no usable package name"_s};
  } else if (saved.kind == SavedApp::Kind::Package) {
    manifest.package = package;
    manifest.build = fields[2];
    manifest.version = fields[3];
    manifest.label = fields[4];
    addExpansionFiles(saved);
  } else if (package != manifest.package) {
    saved.problem =
        Bilingual{u"安装包属于另一个应用：%1"_s, u"the package file is another app's: %1"_s}.with(package);
  }
  co_return saved;
}

QCoro::Task<RestoreOutcome> RestoreRun::restoreOne(SavedApp saved, bool asked) {
  RestoreOutcome outcome;
  const auto failed = [&](const QString& why) {
    return RestoreOutcome{false, false, u"✗ "_s + saved.title() + u": "_s + why};
  };
  m_done = 0;
  m_all = saved.kind == SavedApp::Kind::Whole ? saved.manifest.bytes() : 0;
  m_bench.turn.noteToolStarted(u"SHA-256"_s);
  m_tick.start();
  outcome = co_await checkOne(saved);
  m_tick.stop();
  m_bench.turn.noteProgressOver();
  m_bench.turn.noteToolEnded();
  if (!outcome.good) co_return outcome;
  if (saved.kind == SavedApp::Kind::Whole) saved = co_await identified(saved);
  outcome = m_bench.turn.stopped() ? ended(saved) : failed(saved.problem.shown());
  if (m_bench.turn.stopped() || !saved.isUsable()) co_return outcome;

  RestorePlan plan{saved, {}};
  const QString state = co_await run(appStateLine(Host::current(), saved.manifest.package));
  plan.onHeadset = appStateIn(state, saved.manifest.package);
  const QString words = tellingLine(state);
  outcome = m_bench.turn.stopped()
                ? ended(saved)
                : failed(inFace(u"头显没有回答"_s, u"the headset gave no answer"_s) + u' ' + words);
  outcome.ends = true;
  if (m_bench.turn.stopped() || !plan.onHeadset.whole) co_return outcome;
  const bool risky = plan.isDowngrade() || plan.lacksRoom();
  bool yes = true;
  if (!asked || risky) yes = co_await agreed(plan.text(), risky);
  outcome = {};
  if (!yes) co_return outcome;
  bool withData = true;
  if (plan.meetsData()) {
    qint64 there = 0;
    for (const DeviceFile& file : plan.onHeadset.data) there += file.size;
    const QString question =
        saved.title() + u"\r\n\r\n"_s +
        inFace(u"头显上已有这个应用的数据。用备份的数据覆盖吗？其他文件不变。"_s,
               u"The headset has data of this app. Put the saved data over it? Other files stay."_s) +
        u"\r\n\r\n"_s +
        lineOf(u"头显上"_s, u"on the headset"_s,
               inFace(u"%1 个文件，%2"_s, u"%1 files, %2"_s, u"%1 files, %2"_s)
                   .arg(plan.onHeadset.data.size())
                   .arg(readableSize(there))) +
        lineOf(u"备份"_s, u"in the backup"_s, amount(saved.manifest, u"data"_s));
    withData = co_await agreed(question.trimmed(), true);
  }
  m_done = m_sentBefore;
  m_all = m_toSend;
  m_tick.start();
  const QString fault = co_await put(saved, withData);
  m_tick.stop();
  m_bench.turn.noteProgressOver();
  if (m_bench.turn.stopped()) {
    outcome = ended(saved);
    outcome.text += inFace(u"，还原没有完成，请再做一次"_s, u"; the restore is not complete: repeat it"_s);
    co_return outcome;
  }
  outcome = failed(fault);
  if (!fault.isEmpty()) co_return outcome;
  outcome.good = true;
  outcome.text = u"✓ "_s + saved.title() + u": "_s + inFace(u"已还原"_s, u"restored"_s);
  if (!withData) outcome.text += inFace(u"，数据没有动"_s, u"; its data was left alone"_s);
  co_return outcome;
}

/// Puts everything on the headset. Returns what went wrong, or an empty text.
QCoro::Task<QString> RestoreRun::put(SavedApp saved, bool withData) {
  QStringList packages;
  for (const BackupFile& file : saved.manifest.filesOf(u"apk"_s))
    packages << QDir::toNativeSeparators(saved.pathOf(file));
  const Host host = Host::current();
  if (!packages.isEmpty()) {
    QString line = installSeveralLine(host, packages);
    if (packages.size() == 1) line = installLine(host, packages.constFirst(), false);
    const QString reply = co_await send(line, saved.manifest.bytes(u"apk"_s));
    const Outcome installed = installOutcome(reply);
    if (m_bench.turn.stopped()) co_return QString();
    if (installed.kind != Outcome::Kind::Success) {
      QString why = inFace(u"没有安装"_s, u"not installed"_s) + u": "_s;
      if (!installed.code.isEmpty()) why += installed.code + u' ';
      why += installed.sentence.chinese.isEmpty() ? installed.words : installed.sentence.shown();
      co_return why;
    }
  }
  QStringList parts = {u"obb"_s};
  if (withData) parts << u"data"_s;
  for (const QString& part : parts) {
    const QString fault = co_await push(saved, part);
    if (m_bench.turn.stopped()) co_return QString();
    if (!fault.isEmpty()) {
      QString why = inFace(u"没有传完"_s, u"not all of it came"_s) + u": "_s + fault;
      co_return why;
    }
  }
  co_await makeEmptyFolders(saved, parts);
  const QString different = co_await differences(saved, withData);
  co_return different;
}

QCoro::Task<QString> RestoreRun::push(SavedApp saved, QString part) {
  const QList<BackupFile> files = saved.manifest.filesOf(part);
  if (files.isEmpty()) co_return QString();
  const Host host = Host::current();
  const QString place = appFilesRoot + part + u'/' + saved.manifest.package;
  const QString folder = folderToPush(saved, files, part);
  if (!folder.isEmpty()) {
    // With the dot adb sends what is in the folder, whether the headset already has one or not.
    const QString content = QDir::toNativeSeparators(folder + u"/."_s);
    const QString reply = co_await send(pushLine(host, content, place), saved.manifest.bytes(part));
    const Outcome pushed = pushOutcome(reply);
    QString fault = pushed.kind == Outcome::Kind::Success ? QString() : pushed.words;
    if (pushed.kind != Outcome::Kind::Success && fault.isEmpty()) fault = tellingLine(reply);
    co_return fault;
  }
  for (const BackupFile& file : files) {
    const QString reply = co_await send(
        pushLine(host, QDir::toNativeSeparators(saved.pathOf(file)), file.devicePath()), file.size);
    if (m_bench.turn.stopped()) co_return QString();
    const Outcome pushed = pushOutcome(reply);
    if (pushed.kind == Outcome::Kind::Success) continue;
    QString fault = file.devicePath() + u": "_s + pushed.words;
    co_return fault;
  }
  co_return QString();
}

/// adb does not send empty folders.
QCoro::Task<> RestoreRun::makeEmptyFolders(SavedApp saved, QStringList parts) {
  QStringList paths;
  for (const QString& folder : saved.manifest.emptyFolders)
    if (parts.contains(folder.section(u'/', 0, 0))) paths << appFilesRoot + folder;
  for (qsizetype from = 0; from < paths.size() && !m_bench.turn.stopped(); from += foldersPerCall)
    co_await run(makeFoldersLine(Host::current(), paths.mid(from, foldersPerCall)));
}

/// Files and folders that are not on the headset as they are in the backup.
QCoro::Task<QString> RestoreRun::differences(SavedApp saved, bool withData) {
  const QString reply = co_await run(appStateLine(Host::current(), saved.manifest.package));
  const AppState state = appStateIn(reply, saved.manifest.package);
  if (!state.whole)
    co_return inFace(u"头显没有回答，无法核对"_s, u"the headset gave no answer; nothing could be compared"_s);
  QHash<QString, qint64> there;
  QList<qint64> packages;
  for (const QList<DeviceFile>* files : {&state.expansionFiles, &state.data})
    for (const DeviceFile& file : *files) there.insert(file.path, file.size);
  for (const DeviceFile& file : state.packageFiles) packages << file.size;
  QStringList different;
  for (const BackupFile& file : saved.manifest.files) {
    if (file.part() == "data"_L1 && !withData) continue;
    const bool isPackage = file.devicePath().isEmpty();
    const bool same =
        isPackage ? packages.removeOne(file.size) : there.value(file.devicePath(), -1) == file.size;
    if (!same) different << file.known();
  }
  const QSet<QString> folders(state.folders.begin(), state.folders.end());
  for (const QString& folder : saved.manifest.emptyFolders)
    if (folder.startsWith("obb/"_L1) || withData)
      if (!folders.contains(appFilesRoot + folder)) different << folder;
  if (different.isEmpty()) co_return QString();
  co_return inFace(u"头显上的大小不一致"_s, u"the sizes on the headset differ"_s) + u": "_s +
      firstFew(different).join(u", "_s);
}

}  // namespace orvanta
