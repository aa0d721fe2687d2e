#include "operations/data_copy.h"

#include "core/tools.h"
#include "operations/backup_paths.h"
#include "operations/command_lines.h"
#include "operations/local_copy.h"
#include "operations/replies.h"
#include "operations/safe_pull.h"

using namespace Qt::StringLiterals;

namespace orvanta {

DataCopy::DataCopy(MenuContext& menu) : m_menu(menu) {
  connect(menu.window().mnu_NonRootBackup, &QAction::triggered, this, &DataCopy::mnu_NonRootBackup_Click);
  connect(menu.window().mnu_Restore, &QAction::triggered, this, &DataCopy::mnu_Restore_Click);
}

QCoro::Task<> DataCopy::mnu_NonRootBackup_Click() {
  const auto turn = m_menu.form().turn().begin();
  if (!turn) co_return;
  const QString package = m_menu.window().SelectedPackage();
  const bool usable = co_await m_menu.isUsable(package);
  if (!usable) co_return;
  const QString folder = co_await m_menu.desktop().askFolder(u"Select destination Folder"_s);
  if (folder.isEmpty()) co_return;
  if (!FolderExists(folder)) {
    // The tool would give the copy this folder's name instead of the package's.
    co_await m_menu.showError(u"没有这个文件夹 (There is no such folder): "_s + folder);
    co_return;
  }
  PullTask task;
  const Host host = Host::current();
  task.remotePath = dataPathOnDevice(package);
  task.place = folder + host.style.separator + package;
  task.isFolder = true;
  task.line = pullLine(host, task.remotePath, folder);
  const PullOutcome outcome = co_await pullSafely(m_menu, task);
  const bool noFiles = m_menu.LastReply.contains("0 files"_L1);
  if (noFiles) co_await m_menu.showInformation(u"找不到应用数据"_s, u"Error"_s);
  if (saysRemoteMissing(m_menu.LastReply)) {
    co_await m_menu.showInformation(u"找不到应用程序数据！"_s, u"Error"_s);
    if (!outcome.asBefore) co_await m_menu.showError(failureText(m_menu, outcome));
    co_return;
  }
  if (outcome.complete ? !outcome.notes.isEmpty() : !noFiles || !outcome.notes.isEmpty())
    co_await m_menu.showError(failureText(m_menu, outcome));
  m_menu.presentFolder(folder);
}

QCoro::Task<> DataCopy::mnu_Restore_Click() {
  const auto turn = m_menu.form().turn().begin();
  if (!turn) co_return;
  const QString package = m_menu.window().SelectedPackage();
  const bool usable = co_await m_menu.isUsable(package);
  if (!usable) co_return;
  const QString chosen = co_await m_menu.desktop().askFolder(u"选择包含备份数据的文件夹"_s);
  if (chosen.isEmpty()) co_return;
  const HostStyle& style = HostStyle::native();
  const QString copy = restoreFolder(chosen, package, style) + style.separator + package;
  if (!FolderExists(copy)) {
    co_await m_menu.showError(u"没有找到备份！"_s);
    co_return;
  }
  co_await push(package, copy);
  QString told = m_menu.told();
  if (m_menu.form().turn().stopped())
    told += u"\r\n还原没有完成，请再做一次 (The restore is not complete: repeat it)"_s;
  co_await m_menu.showInformation(told, u"备份还原"_s);
}

QCoro::Task<> DataCopy::push(QString package, QString copy) {
  const Host host = Host::current();
  const QString question = sizesLine(host, dataPathOnDevice(package));
  const QString reply = co_await m_menu.ask(question);
  // Where files are there already, how many are there does not tell how many have come.
  const bool countable = sizesIn(reply).files == 0;
  const PushProgress progress(m_menu.strips(), question, countable ? localSizes(copy).bytes : 0);
  co_await m_menu.execute(pushDataLine(host, copy));
}

}  // namespace orvanta
