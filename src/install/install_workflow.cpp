#include "install/install_workflow.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <algorithm>

#include "adb/device_names.h"
#include "adb/lines.h"
#include "adb/listing.h"
#include "adb/replies.h"
#include "core/paths.h"
#include "core/pause.h"
#include "core/workbench.h"
#include "install/device_storage.h"
#include "install/expansion_files.h"
#include "install/send_progress.h"
#include "monitor/storage_report.h"
#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

// The text in place of the storage path tells why a file was not sent; its beginning is enough.
constexpr qsizetype longestShownReply = 1000;

int lastEntry(const ExpansionFileList& module) {
  return qMin(module.ObbFileCount, static_cast<qint32>(module.ObbFileNames.size()) - 1);
}

}  // namespace

InstallWorkflow::InstallWorkflow(Workbench& bench, QWidget* window, std::function<void()> chooseDevice)
    : m_bench(bench), m_window(window), m_chooseDevice(std::move(chooseDevice)) {}

InstallWorkflow::~InstallWorkflow() = default;

QCoro::Task<> InstallWorkflow::Command1_Click() {
  // Nothing has begun yet, so that No leaves everything as it is.
  if (!m_bench.turn.taken()) {
    const bool goesOn = co_await mayBegin(m_bench, plan(), m_chooseDevice);
    if (!goesOn) co_return;
  }
  const auto turn = m_bench.turn.begin();
  if (!turn) co_return;
  lock();
  scan();
  beginRun();
  const bool withFiles = m_bench.state.expansionFiles.ObbFileCount > 0;
  if (withFiles) {
    const bool lives = co_await selectFiles();
    if (!lives) co_return;
  }
  if (!m_bench.turn.stopped()) co_await installAndTransfer(withFiles);
  m_bench.desktop.Beep();
  m_bench.say(designed(u"所有任务都完成了！"));
  co_await checkSizes();
  unlock();
  giveVerdict();
}

QCoro::Task<InstallRun> InstallWorkflow::installUnattended(Unattended wanted) {
  m_attended = false;
  {
    const auto turn = m_bench.turn.begin();
    if (!turn) co_return InstallRun();
    lock();
    scan();
    for (const QString& path : wanted.files) addFile(path);
    m_bench.state.expansionFiles.ObbSelectionConfirmed = true;
    beginRun();
    m_run.install = wanted.installed;
    co_await installAndTransfer(m_bench.state.expansionFiles.ObbFileCount > 0);
    co_await checkSizes();
    unlock();
    giveVerdict();
  }
  InstallRun run = m_run;
  co_return run;
}

void InstallWorkflow::addFile(const QString& path) {
  ExpansionFileList& module = m_bench.state.expansionFiles;
  const QString name = BaseName(path);
  const auto begin = module.ObbFileNames.begin();
  if (std::find(begin, begin + lastEntry(module) + 1, name) != begin + lastEntry(module) + 1) return;
  const auto entry = static_cast<size_t>(++module.ObbFileCount);
  if (entry >= module.ObbFileNames.size()) return;
  module.ObbFileNames[entry] = name;
  module.ObbFilePaths[entry] = path;
}

void InstallWorkflow::beginRun() {
  const LoadedPackage& package = m_bench.state.package;
  const QString& name = package.ManifestFields[FieldVersionName];
  m_run = {};
  m_run.package = package.package();
  m_run.version = name.isEmpty() ? package.versionCode() : name;
  m_run.packageBytes = QFileInfo(package.ApkPath).size();
  for (const QString& path : package.splits) m_run.packageBytes += QFileInfo(path).size();
  m_placeInRun.clear();
  m_installReply.clear();
  m_deviceFolder.clear();
}

QCoro::Task<> InstallWorkflow::installAndTransfer(bool withFiles) {
  QElapsedTimer since;
  since.start();
  if (withFiles) noteFiles({});
  {
    const qint64 packageBytes = m_run.install ? 0 : m_run.packageBytes;
    SendProgress progress(m_bench.turn, m_bench.objDOS, packageBytes + bytesToSend());
    const QScopedValueRollback shown(m_progress, &progress);
    QString Reply = u"Success"_s;  // of an earlier try
    if (!m_run.install) Reply = co_await runInstall();
    const bool filesFollow = m_attended || m_run.install->kind == Outcome::Kind::Success;
    if (withFiles && filesFollow) co_await ObbTransfer(Reply);
  }
  m_run.milliseconds = since.elapsed();
  co_await StorageReport(m_bench, m_bench.objDOS);
}

void InstallWorkflow::lock() {
  m_bench.state.WatcherHold = true;
  m_bench.state.expansionFiles.ObbFileCount = 0;
  m_bench.state.setPhase(Availability::Phase::Locked);
}

void InstallWorkflow::unlock() {
  m_bench.state.setPhase(Availability::Phase::Unlocked);
  m_bench.state.WatcherHold = false;
}

void InstallWorkflow::scan() {
  const LoadedPackage& package = m_bench.state.package;
  const PackageSurroundings found = surroundingsOf(package.ApkPath, package.package());
  listExpansionFiles(found, HostStyle::native(), m_bench.state.expansionFiles);
  if (found.hasPackageFolder) m_bench.desktop.Beep();
}

SendPlan InstallWorkflow::plan() const {
  const LoadedPackage& package = m_bench.state.package;
  SendPlan plan;
  plan.name = package.ApkFileName;
  plan.build = package.versionCode();
  plan.newerBuild = m_bench.state.headset().newerBuild;
  plan.packageBytes = QFileInfo(package.ApkPath).size();
  if (package.package().isEmpty() || !isFitPackageName(package.package())) return plan;
  ExpansionFileList list;
  listExpansionFiles(surroundingsOf(package.ApkPath, package.package()), HostStyle::native(), list);
  plan.files = qMax(lastEntry(list), 0);
  for (int i = 1; i <= plan.files; ++i)
    plan.fileBytes += QFileInfo(list.ObbFilePaths[static_cast<size_t>(i)]).size();
  return plan;
}

Form3& InstallWorkflow::loadedSelection() {
  if (!m_Form3) {
    m_Form3 =
        std::make_unique<Form3>(m_bench.state.package.ApkFileName, m_bench.state.expansionFiles, m_window);
    connect(m_Form3.get(), &Form::closedByUser, this, [this] { m_unloadDue = true; });
    connect(m_Form3.get(), &Form3::cancelled, this, [this] {
      m_unloadDue = true;
      m_bench.turn.requestStop();
    });
  }
  return *m_Form3;
}

QCoro::Task<bool> InstallWorkflow::selectFiles() {
  m_unloadDue = false;
  const bool lives = co_await loadedSelection().showModal();
  // Its button keeps it loaded, since its marks are read later; any other way out unloads it.
  if (lives && m_unloadDue) m_Form3.reset();
  co_return lives;
}

QCoro::Task<QString> InstallWorkflow::runInstall() {
  m_bench.say(designed(u"尝试连接设备以进行Orvanta，请稍候！"));
  co_await Pause(0.2);
  const LoadedPackage& package = m_bench.state.package;
  QString line = installLine(Host::current(), package.ApkPath, m_bench.state.Grant);
  if (!package.splits.isEmpty())
    line = installSeveralLine(Host::current(), QStringList(package.ApkPath) + package.splits,
                              m_bench.state.Grant);
  m_progress->beginFile(m_run.packageBytes);
  const QString Reply = co_await m_bench.objDOS.ExecuteCommand(line);
  m_progress->endFile();
  m_run.install = installOutcome(Reply);
  m_installReply = Reply;
  co_return Reply;
}

QCoro::Task<QString> InstallWorkflow::listDeviceFolder() {
  const StorageAnswer storage = co_await askStorage(m_bench);
  // An error text in place of the path must not reach the device's shell: it counts as an empty listing.
  if (storage.complete && !isPlainDevicePath(storage.path)) co_return QString();
  std::optional<QString> line;
  if (storage.complete)
    line = listingLine(Host::current(), obbFolder(storage.path, m_bench.state.package.package()));
  const QString Listing = co_await m_bench.runQuietly(m_bench.objDOS, line);
  co_return Listing;
}

bool InstallWorkflow::isChosen(int i) {
  if (!m_attended || i > Form3::shownRows) return true;
  return loadedSelection().Check1[static_cast<size_t>(i - 1)]->Value() == 0;
}

void InstallWorkflow::noteFiles(const QString& Listing) {
  m_run.files.clear();
  m_placeInRun.clear();
  const ExpansionFileList& module = m_bench.state.expansionFiles;
  if (!module.ObbSelectionConfirmed) return;
  const ListedFiles listed(Listing);
  for (int i = 1; i <= lastEntry(module); ++i) {
    if (!isChosen(i)) continue;
    SentFile file;
    file.name = module.ObbFileNames[static_cast<size_t>(i)];
    file.bytes = QFileInfo(module.ObbFilePaths[static_cast<size_t>(i)]).size();
    isThere(file, Listing, listed);
    m_placeInRun[i] = m_run.files.size();
    m_run.files << file;
  }
}

/// Whether nothing is sent since the headset has the file, which is noted in it.
bool InstallWorkflow::isThere(SentFile& file, const QString& Listing, const ListedFiles& listed) const {
  file.noteSkipped(Listing, listed);
  if (!m_attended && (file.differs() || file.missing)) file.skipped = file.missing = false;
  return file.skipped;
}

qint64 InstallWorkflow::bytesToSend() const {
  qint64 bytes = 0;
  for (const SentFile& file : m_run.files) bytes += file.skipped ? 0 : file.bytes;
  return bytes;
}

QCoro::Task<> InstallWorkflow::ObbTransfer(QString Reply) {
  const QString package = m_bench.state.package.package();
  if (package.isEmpty() || !isFitPackageName(package)) {
    m_bench.say(
        inFace(u"没有可用的包名，不传输obb文件"_s, u"No usable package name: no obb file is transferred"_s) +
        u": "_s + package);
    co_return;
  }
  const ExpansionFileList& module = m_bench.state.expansionFiles;
  const QString Listing = co_await listDeviceFolder();
  noteFiles(Listing);
  m_progress->setBytesToCome(bytesToSend());
  qint16 AlreadyOnDevice = 0;
  for (int i = 1; i <= lastEntry(module); ++i) {
    if (isOnDevice(module.ObbFileNames[static_cast<size_t>(i)], Listing)) ++AlreadyOnDevice;
  }
  const bool allThere = m_attended ? AlreadyOnDevice == module.ObbFileCount
                                   : std::all_of(m_run.files.begin(), m_run.files.end(),
                                                 [](const SentFile& file) { return file.skipped; });
  if (allThere || !module.ObbSelectionConfirmed) {
    m_bench.say(designed(u"跳过所有obb文件"));
    co_return;
  }
  // That none of them is there is known only if the device answered for exactly this folder.
  const bool noneThere = AlreadyOnDevice == 0 && Listing.contains(obbFolder(QString(), package));
  // Without a reported success there is nothing to ask about an empty folder.
  bool removalDue = noneThere && (saysSuccess(Reply) || listsFiles(Listing));
  for (int i = 1; i <= lastEntry(module) && !m_bench.turn.stopped(); ++i) {
    if (!isChosen(i)) {
      m_bench.say(designed(u"跳过的obb文件：") + QString(9, u' ') +
                  module.ObbFileNames[static_cast<size_t>(i)]);
      continue;
    }
    bool removeOldFolder = false;
    if (removalDue) {
      const QString unreported =
          inFace(u"adb 没有报告安装成功"_s, u"adb did not report a successful install"_s);
      removeOldFolder = co_await mayRemoveObbFolder(m_bench, package, Reply, unreported);
      removalDue = false;
    }
    co_await transferEntry(i, removeOldFolder);
  }
}

QCoro::Task<> InstallWorkflow::transferEntry(int i, bool removeOldFolder) {
  const QString package = m_bench.state.package.package();
  const QString name = m_bench.state.expansionFiles.ObbFileNames[static_cast<size_t>(i)];
  const QString path = m_bench.state.expansionFiles.ObbFilePaths[static_cast<size_t>(i)];
  if (removeOldFolder) {
    sayFolderRemoval(m_bench, package);
    co_await removeObbFolder(m_bench, package);
  }
  SentFile& file = fileOf(i);
  const QString Listing = co_await listDeviceFolder();
  if (m_bench.turn.stopped()) co_return;
  m_progress->beginFile(file.bytes);
  if (isThere(file, Listing, ListedFiles(Listing))) {
    m_progress->endFile();
    m_bench.say(designed(u"跳过的obb文件：") + QString(9, u' ') + name);
    co_return;
  }
  m_bench.say(designed(u"安装额外的 obb 文件：") + QString(16, u' ') + name);
  co_await Pause(0.3);
  const StorageAnswer storage = co_await askStorage(m_bench);
  if (storage.complete && !isPlainDevicePath(storage.path)) {
    m_bench.say(storage.path.left(longestShownReply));
    file.push = pushOutcome(storage.reply);
    co_return;
  }
  if (storage.complete) {
    m_deviceFolder = obbFolder(storage.path, package);
    m_bench.objDOS.setCommandLine(pushLine(Host::current(), path, m_deviceFolder + u'/' + name));
  }
  const QString Reply = co_await m_bench.objDOS.ExecuteCommand();
  m_progress->endFile();
  file.push = pushOutcome(Reply);
}

QCoro::Task<> InstallWorkflow::checkSizes() {
  const auto wasSent = [](const SentFile& file) {
    return file.push && file.push->kind == Outcome::Kind::Success;
  };
  if (std::none_of(m_run.files.begin(), m_run.files.end(), wasSent)) co_return;
  const QString line = listingLine(Host::current(), m_deviceFolder);
  const QString Listing = co_await m_bench.runQuietly(m_bench.objDOS, line);
  const ListedFiles listed(Listing);
  m_run.listed = !listed.isEmpty();
  if (!m_run.listed) co_return;
  for (SentFile& file : m_run.files) {
    if (!wasSent(file)) continue;
    file.onDevice = listed.sizeOf(file.name);
    file.missing = !file.onDevice;
    if (!file.arrived())
      m_bench.say(inFace(u"头显上的文件不完整"_s, u"The file on the headset is not complete"_s) + u": "_s +
                  file.name);
  }
}

void InstallWorkflow::giveVerdict() {
  m_run.stopped = m_bench.turn.stopped();
  // What came after it has moved the reason out of view.
  if (m_run.install && m_run.install->kind != Outcome::Kind::Success)
    m_bench.console.pointOut(tellingLine(withoutServerNotes(m_installReply)));
  m_bench.status.setVerdict(verdictOn(m_run));
}

}  // namespace orvanta
