#include "operations/package_backup.h"

#include <QDir>
#include <QFileInfo>

#include "core/tools.h"
#include "operations/backup_paths.h"
#include "operations/command_lines.h"
#include "operations/replies.h"
#include "operations/safe_pull.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

const QString dialogTitle = u"Save extracted APK as"_s;

}  // namespace

PackageBackup::PackageBackup(MenuContext& menu) : m_menu(menu) {
  connect(menu.window().mnu_backup_apk, &QAction::triggered, this, &PackageBackup::mnu_backup_apk_Click);
  connect(menu.window().mnu_backup_apk_obb, &QAction::triggered, this,
          &PackageBackup::mnu_backup_apk_obb_Click);
}

QCoro::Task<> PackageBackup::mnu_backup_apk_Click() {
  const auto turn = m_menu.form().turn().begin();
  if (!turn) co_return;
  const QString package = m_menu.window().SelectedPackage();
  const QString target = co_await savePackage(package, u"Error"_s, false);
  if (!target.isEmpty()) m_menu.presentFolder(ParentPath(target));
}

QCoro::Task<> PackageBackup::mnu_backup_apk_obb_Click() {
  const auto turn = m_menu.form().turn().begin();
  if (!turn) co_return;
  const QString package = m_menu.window().SelectedPackage();
  co_await m_menu.showInformation(u"请稍候，这可能需要一段时间..."_s, u"Chill"_s);
  const QString target = co_await savePackage(package, u"Orvanta"_s, true);
  if (target.isEmpty()) co_return;
  co_await saveExpansionFiles(package, target);
  m_menu.presentFolder(ParentPath(target));
}

/// Returns the file that holds the package now; an empty text when there is none.
QCoro::Task<QString> PackageBackup::savePackage(QString package, QString pathErrorTitle, bool folderFollows) {
  const bool usable = co_await m_menu.isUsable(package);
  if (!usable) co_return QString();
  co_await m_menu.execute(packagePathLine(Host::current(), package));
  const QString reply = withoutServerNotes(m_menu.LastReply);
  if (!namesPackageFile(reply)) {
    const bool silent = reply.trimmed().isEmpty() && !m_menu.form().turn().stopped();
    // That is how the device says that it has no such package.
    const QString text =
        silent
            ? u"设备上没有这个应用，或没有回答 (The headset has no such app, or gave no answer): "_s + package
            : m_menu.told();
    co_await m_menu.showError(text, pathErrorTitle);
    if (m_menu.form().turn().stopped()) co_return QString();
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
  if (outcome.complete) co_return QString(target);
  co_await m_menu.showError(failureText(m_menu, outcome));
  co_return QString();
}

QCoro::Task<> PackageBackup::saveExpansionFiles(QString package, QString target) {
  PullTask task;
  task.remotePath = obbPathOnDevice(package);
  task.place = ParentPath(target) + package;
  task.isFolder = true;
  const Host host = Host::current();
  task.line = pullLine(host, task.remotePath, ParentPath(target) + host.style.separator + package);
  const PullOutcome outcome = co_await pullSafely(m_menu, task);
  // Many apps have none.
  const bool nothingThere = outcome.asBefore && saysRemoteMissing(m_menu.LastReply);
  if (outcome.complete ? outcome.notes.isEmpty() : nothingThere) co_return;
  co_await m_menu.showError(failureText(m_menu, outcome));
}

QCoro::Task<QString> PackageBackup::SaveApkDialog(QString DefaultName, QString InitialFolder,
                                                  QString folderName) {
  SaveFileQuestion question;
  question.title = dialogTitle;
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

QCoro::Task<bool> PackageBackup::maySave(QString target, QString folderName) {
  const QFileInfo info(target);
  QString problem;
  if (!info.dir().exists()) {
    problem = u"没有这个文件夹 (There is no such folder): "_s + ParentPath(target);
  } else if (info.isDir()) {
    problem = u"这是一个文件夹 (This is a folder): "_s + target;
  } else if (!folderName.isEmpty() && info.fileName().compare(folderName, Qt::CaseInsensitive) == 0) {
    problem = u"这个名称留给 OBB 文件夹，请换一个 (The OBB folder gets this name, please take another): "_s +
              info.fileName();
  }
  if (!problem.isEmpty()) {
    co_await m_menu.showError(problem);
    co_return false;
  }
  if (!info.exists() && !info.isSymLink()) co_return true;
  MessageBox box;
  box.title = dialogTitle;
  box.text = info.fileName() + u" 已存在。\r\n要替换它吗？\r\n\r\n(The file exists already. Replace it?)"_s;
  box.icon = BoxIcon::Warning;
  box.buttons = BoxButtons::YesNo;
  const BoxAnswer answer = co_await m_menu.showBox(box);
  co_return answer == BoxAnswer::Yes;
}

}  // namespace orvanta
