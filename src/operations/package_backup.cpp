#include "operations/package_backup.h"

#include <QDir>
#include <QFileInfo>

#include "adb/device_names.h"
#include "adb/lines.h"
#include "adb/replies.h"
#include "core/paths.h"
#include "operations/backup_paths.h"
#include "operations/safe_pull.h"
#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr Designed dialogTitle(u"Save extracted APK as");

}  // namespace

PackageBackup::PackageBackup(MenuContext& menu) : m_menu(menu) {
  connect(menu.window().mnu_backup_apk, &QAction::triggered, this, &PackageBackup::mnu_backup_apk_Click);
  connect(menu.window().mnu_backup_apk_obb, &QAction::triggered, this,
          &PackageBackup::mnu_backup_apk_obb_Click);
}

QCoro::Task<> PackageBackup::mnu_backup_apk_Click() {
  const auto turn = m_menu.bench().turn.begin();
  if (!turn) co_return;
  const QString package = m_menu.window().SelectedPackage();
  const QString target = co_await savePackage(package, designed(u"Error"), false);
  if (!target.isEmpty()) presentBackup(target);
}

QCoro::Task<> PackageBackup::mnu_backup_apk_obb_Click() {
  const auto turn = m_menu.bench().turn.begin();
  if (!turn) co_return;
  const QString package = m_menu.window().SelectedPackage();
  co_await m_menu.showInformation(designed(u"请稍候，这可能需要一段时间..."), designed(u"Chill"));
  const QString target = co_await savePackage(package, u"Orvanta"_s, true);
  if (target.isEmpty()) co_return;
  co_await saveExpansionFiles(package, target);
  presentBackup(target);
}

void PackageBackup::noteKept(const PullOutcome& outcome) {
  const QString kept = outcome.keptText(PullOutcome::Names::Short);
  if (!kept.isEmpty()) m_kept << kept;
}

void PackageBackup::presentBackup(const QString& target) {
  m_menu.presentFolder(ParentPath(target));
  m_menu.window().sayOutcome({m_news.join(newsSeparator), m_kept.join(newsSeparator)});
}

/// Returns the file that holds the package now; empty if the backup did not complete.
QCoro::Task<QString> PackageBackup::savePackage(QString package, QString pathErrorTitle, bool folderFollows) {
  m_news.clear();
  m_kept.clear();
  m_noExpansionFiles = false;
  const bool usable = co_await m_menu.isUsable(package);
  if (!usable) co_return QString();
  co_await m_menu.execute(packagePathLine(Host::current(), package));
  const QString reply = m_menu.LastReply;
  if (!namesPackageFile(reply)) {
    const bool silent = reply.trimmed().isEmpty() && !m_menu.bench().turn.stopped();
    // This is how the device says that it does not have the package.
    const QString text = silent ? inFace(u"设备上没有这个应用，或没有回答"_s,
                                         u"The headset has no such app, or gave no answer"_s) +
                                      u": "_s + package
                                : m_menu.told();
    co_await m_menu.showError(text, pathErrorTitle);
    if (m_menu.bench().turn.stopped()) co_return QString();
  }
  const QString remotePath = packageFileIn(reply);
  const QString folderName = folderFollows ? package : QString();
  const QString target = co_await SaveApkDialog(package, QString(), folderName);
  if (target.isEmpty()) co_return QString();
  PullTask task;
  task.line = pullLine(Host::current(), remotePath, target);
  task.remotePath = remotePath;
  task.place = target;
  const PullOutcome outcome = co_await pullSafely(m_menu, task);
  if (outcome.complete) {
    m_news << u"✓ "_s + inFace(u"已备份"_s, u"Backed up"_s) + u": "_s + QFileInfo(target).fileName() +
                  u", "_s + figures(1, outcome.copied.bytes, false);
    if (!outcome.notes.isEmpty()) m_news << outcome.notes.trimmed();
    noteKept(outcome);
    co_return QString(target);
  }
  QString text = failureText(m_menu, outcome);
  const qsizetype files = reply.count("package:"_L1);
  if (files > 1)
    text.prepend((inFace(u"这个应用由 %1 个文件组成，“全部备份”可以保存它们"_s,
                         u"This app has %1 files; \"Back up everything\" saves them"_s) +
                  u"\r\n\r\n"_s)
                     .arg(files));
  co_await m_menu.showError(text);
  co_return QString();
}

QCoro::Task<> PackageBackup::saveExpansionFiles(QString package, QString target) {
  const QString none = inFace(u"头显上没有 OBB"_s, u"no OBB files on the headset"_s);
  if (m_noExpansionFiles) {
    m_news << none;
    co_return;
  }
  PullTask task;
  task.remotePath = obbPathOnDevice(package);
  task.place = ParentPath(target) + package;
  task.isFolder = true;
  const Host host = Host::current();
  task.line = pullLine(host, task.remotePath, ParentPath(target) + host.style.separator + package);
  const PullOutcome outcome = co_await pullSafely(m_menu, task);
  // Many apps have no expansion files.
  const bool nothingThere = outcome.asBefore && saysRemoteMissing(m_menu.LastReply);
  if (nothingThere) m_news << none;
  if (outcome.complete && outcome.notes.isEmpty())
    m_news << u"OBB: "_s + figures(outcome.copied.files, outcome.copied.bytes, true);
  noteKept(outcome);
  if (outcome.complete ? outcome.notes.isEmpty() : nothingThere) co_return;
  co_await m_menu.showError(failureText(m_menu, outcome));
}

QCoro::Task<QString> PackageBackup::SaveApkDialog(QString DefaultName, QString InitialFolder,
                                                  QString folderName) {
  SaveFileQuestion question;
  question.title = dialogTitle.shown();
  question.suggestedPath = InitialFolder + DefaultName;
  question.filters = QStringList{u"Android apk (*.apk)"_s};
  for (;;) {
    const QString chosen = co_await m_menu.desktop().askSaveFile(question);
    if (chosen.isEmpty()) co_return QString();
    const QString target = withApkEnding(chosen);
    const bool may = co_await maySave(target, folderName);
    if (may) co_return QString(target);
    question.suggestedPath = target;
  }
}

QCoro::Task<bool> PackageBackup::hasExpansionFiles(QString package) {
  const QString reply = co_await m_menu.ask(sizesLine(Host::current(), obbPathOnDevice(package)));
  const DeviceSizes sizes = sizesIn(reply);
  const bool none = saysRemoteMissing(reply) || (!reply.isEmpty() && sizes.known() && sizes.files == 0);
  co_return !none || m_menu.bench().turn.stopped();
}

QCoro::Task<bool> PackageBackup::maySave(QString target, QString folderName) {
  const QFileInfo info(target);
  QString problem;
  if (!info.dir().exists()) {
    problem = inFace(u"没有这个文件夹"_s, u"There is no such folder"_s) + u": "_s + ParentPath(target);
  } else if (info.isDir()) {
    problem = inFace(u"这是一个文件夹"_s, u"This is a folder"_s) + u": "_s + target;
  } else if (!folderName.isEmpty() && info.fileName().compare(folderName, Qt::CaseInsensitive) == 0) {
    problem = inFace(u"这个名称留给 OBB 文件夹，请换一个"_s,
                     u"The OBB folder gets this name, please take another"_s) +
              u": "_s + info.fileName();
  }
  if (!problem.isEmpty()) {
    co_await m_menu.showError(problem);
    co_return false;
  }
  if (!folderName.isEmpty()) {
    const QString place = ParentPath(target) + folderName;
    // The place may be another backup's if nothing comes to it.
    bool comes = true;
    if (copyKindAt(place) == CopyKind::Data) comes = co_await hasExpansionFiles(folderName);
    m_noExpansionFiles = !comes;
    bool may = true;
    if (comes) may = co_await m_menu.mayCopyTo(place, CopyKind::ExpansionFiles);
    if (!may) co_return false;
  }
  if (!info.exists() && !info.isSymLink()) co_return true;
  MessageBox box;
  box.title = dialogTitle.shown();
  box.text = info.fileName() + u' ' +
             inFace(u"已存在。\r\n要替换它吗？"_s, u"exists already.\r\nReplace it?"_s,
                    u"已存在。\r\n要替换它吗？\r\n\r\n(The file exists already. Replace it?)"_s);
  box.icon = BoxIcon::Warning;
  box.buttons = BoxButtons::YesNo;
  const BoxAnswer answer = co_await m_menu.showBox(box);
  co_return answer == BoxAnswer::Yes;
}

}  // namespace orvanta
