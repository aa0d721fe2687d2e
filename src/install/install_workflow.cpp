#include "install/install_workflow.h"

#include "core/main_window.h"
#include "core/tools.h"
#include "install/command_lines.h"
#include "install/device_storage.h"
#include "install/expansion_files.h"
#include "monitor/storage_report.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

// What stood in the place of the storage path is the reason why a file was not sent; its beginning says it.
constexpr qsizetype longestShownReply = 1000;

int lastEntry(const Module1& module) {
  return qMin(module.ObbFileCount, static_cast<qint32>(module.ObbFileNames.size()) - 1);
}

}  // namespace

InstallWorkflow::InstallWorkflow(apkinfo& form) : m_form(form) {
  connect(form.Command1, &QPushButton::clicked, this, &InstallWorkflow::Command1_Click);
}

InstallWorkflow::~InstallWorkflow() = default;

QCoro::Task<> InstallWorkflow::Command1_Click() {
  const auto turn = m_form.turn().begin();
  if (!turn) co_return;
  lock();
  scan();
  if (m_form.module().ObbFileCount > 0) {
    co_await selectFiles();
    co_await runInstall();
    co_await ObbTransfer();
  } else {
    co_await runInstall();
  }
  co_await StorageReport(m_form, *m_form.objDOS);
  m_form.desktop().Beep();
  m_form.say(u"所有任务都完成了！"_s);
  unlock();
}

void InstallWorkflow::lock() {
  m_form.WatcherHold = true;
  m_form.module().ObbFileCount = 0;
  // The focus would else go on to the next control, and a second press of the key to it.
  m_form.txtOutputs->setFocus();
  for (Button* button :
       {m_form.Command1, m_form.Command2, m_form.Command3, m_form.Command4, m_form.Command5, m_form.Command6,
        m_form.Command9, m_form.Command10, m_form.Command11, m_form.Command12}) {
    button->setEnabled(false);
  }
}

void InstallWorkflow::unlock() {
  m_form.Command1->setEnabled(false);
  for (Button* button :
       {m_form.Command2, m_form.Command3, m_form.Command4, m_form.Command5, m_form.Command6}) {
    button->setEnabled(true);
  }
  for (Button* button : {m_form.Command9, m_form.Command10, m_form.Command11, m_form.Command12})
    button->setEnabled(false);
  m_form.WatcherHold = false;
}

void InstallWorkflow::scan() {
  PackageSurroundings found;
  found.ApkFolder = ParentPath(m_form.ApkPath);
  found.package = m_form.Label2->Caption();
  const HostStyle& style = HostStyle::native();
  const QString packageFolder = found.ApkFolder + style.separator + found.package;
  found.hasPackageFolder = !found.ApkFolder.isEmpty() && FolderExists(packageFolder);
  found.files = filesDirectlyIn(found.hasPackageFolder ? packageFolder : found.ApkFolder);
  listExpansionFiles(found, style, m_form.module());
  if (found.hasPackageFolder) m_form.desktop().Beep();
}

Form3& InstallWorkflow::loadedSelection() {
  if (!m_Form3) {
    m_Form3 = std::make_unique<Form3>(m_form.Label5->Caption(), m_form.module(), &m_form);
    connect(m_Form3.get(), &Form::closedByUser, this, [this] { m_unloadDue = true; });
  }
  return *m_Form3;
}

QCoro::Task<> InstallWorkflow::selectFiles() {
  m_unloadDue = false;
  co_await loadedSelection().showModal();
  // Its button keeps it loaded, with the marks that are read later; only the close box unloads it.
  if (m_unloadDue) m_Form3.reset();
}

QCoro::Task<> InstallWorkflow::runInstall() {
  m_form.say(u"尝试连接设备以进行Orvanta，请稍候！"_s);
  co_await Pause(0.2);
  const QString line = installLine(Host::current(), m_form.ApkPath, m_form.Check1->Value() == 1);
  co_await m_form.objDOS->ExecuteCommand(line);
}

QCoro::Task<QString> InstallWorkflow::listDeviceFolder() {
  const StorageAnswer storage = co_await askStorage(m_form);
  // An error text in the place of the path stays off the device's shell: it counts as a listing that says
  // nothing.
  if (storage.complete && !isPlainDevicePath(storage.path)) co_return QString();
  std::optional<QString> line;
  if (storage.complete)
    line = listingLine(Host::current(), obbFolder(storage.path, m_form.Label2->Caption()));
  const QString Listing = co_await m_form.runQuietly(*m_form.objDOS, line);
  co_return Listing;
}

bool InstallWorkflow::isChosen(int i) {
  if (i > Form3::shownRows) return true;
  return loadedSelection().Check1[static_cast<size_t>(i - 1)]->Value() == 0;
}

QCoro::Task<> InstallWorkflow::ObbTransfer() {
  const QString package = m_form.Label2->Caption();
  if (package.isEmpty() || !isFitPackageName(package)) {
    m_form.say(u"没有可用的包名，不传输obb文件 (No usable package name: no obb file is transferred): "_s +
               package);
    co_return;
  }
  const Module1& module = m_form.module();
  const QString Listing = co_await listDeviceFolder();
  qint16 AlreadyOnDevice = 0;
  for (int i = 1; i <= lastEntry(module); ++i) {
    if (isOnDevice(module.ObbFileNames[static_cast<size_t>(i)], Listing)) ++AlreadyOnDevice;
  }
  if (AlreadyOnDevice == module.ObbFileCount || !module.ObbSelectionConfirmed) {
    m_form.say(u"跳过所有obb文件"_s);
    co_return;
  }
  // "None of them is there" is only known where the device has answered for this very folder.
  const bool noneThere = AlreadyOnDevice == 0 && Listing.contains(obbFolder(QString(), package));
  bool FolderDecided = false;
  for (int i = 1; i <= lastEntry(module) && !m_form.turn().stopped(); ++i) {
    if (!isChosen(i)) {
      m_form.say(u"跳过的obb文件："_s + QString(9, u' ') + module.ObbFileNames[static_cast<size_t>(i)]);
      continue;
    }
    const bool removeOldFolder = !FolderDecided && noneThere;
    FolderDecided = true;
    co_await transferEntry(i, removeOldFolder);
  }
}

QCoro::Task<> InstallWorkflow::transferEntry(int i, bool removeOldFolder) {
  const QString package = m_form.Label2->Caption();
  const QString name = m_form.module().ObbFileNames[static_cast<size_t>(i)];
  const QString path = m_form.module().ObbFilePaths[static_cast<size_t>(i)];
  if (removeOldFolder) {
    sayFolderRemoval(m_form, package);
    co_await removeObbFolder(m_form, package);
  }
  const QString Listing = co_await listDeviceFolder();
  if (m_form.turn().stopped()) co_return;
  if (isOnDevice(name, Listing)) {
    m_form.say(u"跳过的obb文件："_s + QString(9, u' ') + name);
    co_return;
  }
  m_form.say(u"安装额外的 obb 文件："_s + QString(16, u' ') + name);
  co_await Pause(0.3);
  const StorageAnswer storage = co_await askStorage(m_form);
  if (storage.complete && !isPlainDevicePath(storage.path)) {
    m_form.say(storage.path.left(longestShownReply));
    co_return;
  }
  if (storage.complete) {
    const QString target = obbFolder(storage.path, package) + u'/' + name;
    m_form.objDOS->setCommandLine(pushLine(Host::current(), path, target));
  }
  co_await m_form.objDOS->ExecuteCommand();
}

}  // namespace orvanta
