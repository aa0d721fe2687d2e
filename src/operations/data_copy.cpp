#include "operations/data_copy.h"

#include <QDir>

#include "adb/device_names.h"
#include "adb/lines.h"
#include "adb/replies.h"
#include "backups/copy_note.h"
#include "core/paths.h"
#include "operations/backup_paths.h"
#include "operations/local_copy.h"
#include "operations/safe_pull.h"
#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

QString placeIn(const QString& folder, const QString& package) {
  return folder + HostStyle::native().separator + package;
}

}  // namespace

DataCopy::DataCopy(MenuContext& menu) : m_menu(menu) {
  connect(menu.window().mnu_NonRootBackup, &QAction::triggered, this, &DataCopy::mnu_NonRootBackup_Click);
  connect(menu.window().mnu_Restore, &QAction::triggered, this, &DataCopy::mnu_Restore_Click);
}

QCoro::Task<> DataCopy::mnu_NonRootBackup_Click() {
  const auto turn = m_menu.bench().turn.begin();
  if (!turn) co_return;
  const QString package = m_menu.window().SelectedPackage();
  const bool usable = co_await m_menu.isUsable(package);
  if (!usable) co_return;
  const QString folder = co_await askDestination(package);
  if (folder.isEmpty()) co_return;
  PullTask task;
  const Host host = Host::current();
  task.remotePath = dataPathOnDevice(package);
  task.place = placeIn(folder, package);
  task.isFolder = true;
  task.line = pullLine(host, task.remotePath, folder);
  const PullOutcome outcome = co_await pullSafely(m_menu, task);
  const bool noFiles = saysNoFiles(m_menu.LastReply);
  if (noFiles) co_await m_menu.showInformation(designed(u"找不到应用数据"), designed(u"Error"));
  if (saysRemoteMissing(m_menu.LastReply)) {
    co_await m_menu.showInformation(designed(u"找不到应用程序数据！"), designed(u"Error"));
    if (!outcome.asBefore) co_await m_menu.showError(failureText(m_menu, outcome));
    co_return;
  }
  if (outcome.complete ? !outcome.notes.isEmpty() : !noFiles || !outcome.notes.isEmpty())
    co_await m_menu.showError(failureText(m_menu, outcome));
  m_menu.presentFolder(folder);
  QStringList news;
  // The box about missing data also comes if the number of files ends in 0.
  if (outcome.complete && outcome.notes.isEmpty() && outcome.copied.files > 0)
    news << u"✓ "_s + inFace(u"应用数据已备份"_s, u"The app's data is backed up"_s) + u": "_s +
                figures(outcome.copied.files, outcome.copied.bytes, true);
  news << outcome.keptText(PullOutcome::Names::Short);
  m_menu.window().sayOutcome(news);
}

/// Returns the folder that the copy goes to; empty if the user chose none.
QCoro::Task<QString> DataCopy::askDestination(QString package) {
  for (;;) {
    const QString folder = co_await m_menu.desktop().askFolder(designed(u"Select destination Folder"));
    if (folder.isEmpty()) co_return QString();
    if (!FolderExists(folder)) {
      // adb would give the copy this folder's name instead of the package's.
      co_await m_menu.showError(inFace(u"没有这个文件夹"_s, u"There is no such folder"_s) + u": "_s + folder);
      co_return QString();
    }
    const bool may = co_await m_menu.mayCopyTo(placeIn(folder, package), CopyKind::Data);
    if (may) co_return QString(folder);
  }
}

QCoro::Task<> DataCopy::mnu_Restore_Click() {
  const auto turn = m_menu.bench().turn.begin();
  if (!turn) co_return;
  const QString package = m_menu.window().SelectedPackage();
  const bool usable = co_await m_menu.isUsable(package);
  if (!usable) co_return;
  const QString chosen = co_await m_menu.desktop().askFolder(designed(u"选择包含备份数据的文件夹"));
  if (chosen.isEmpty()) co_return;
  const QString copy = placeIn(restoreFolder(chosen, package, HostStyle::native()), package);
  // Another run may have died, or be copying, since this one started.
  settleCopies(m_menu.bench());
  if (!FolderExists(copy)) {
    co_await m_menu.showError(designed(u"没有找到备份！"));
    co_return;
  }
  if (isUnderway(copy)) {
    co_await m_menu.showError(copyUnderway.shown() + u"\r\n"_s + copy);
    co_return;
  }
  if (copyKindAt(copy) == CopyKind::ExpansionFiles) {
    co_await m_menu.showError(
        inFace(u"这是 OBB 备份，不是应用数据，什么都没有还原"_s,
               u"This is a backup of OBB files, not of the app's data: nothing was restored"_s) +
        u"\r\n"_s + copy);
    co_return;
  }
  const bool may = co_await isTakenForData(copy);
  if (!may) co_return;
  co_await push(package, copy);
  QString told = m_menu.told();
  if (m_menu.bench().turn.stopped())
    told =
        inFace(u"还原没有完成，请再做一次"_s, u"The restore is not complete: repeat it"_s) + u"\r\n"_s + told;
  co_await m_menu.showInformation(told, designed(u"备份还原"));
}

/// Expansion files need not be called `.obb`; the data of nearly all apps lies in subfolders. Where the
/// folder could be either, the user knows.
QCoro::Task<bool> DataCopy::isTakenForData(QString copy) {
  const QDir folder(copy);
  const QDir::Filters all = QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
  if (folder.isEmpty(QDir::Files | all) || !folder.isEmpty(QDir::Dirs | all)) co_return true;
  MessageBox box;
  box.text =
      inFace(
          u"这里只有文件，没有子文件夹，也可能是 OBB 备份。\r\n作为应用数据还原吗？\r\n"_s,
          u"There are only files here and no subfolders, so this may also be a backup of OBB files. Restore it as the app\'s data?\r\n"_s,
          u"这里只有文件，没有子文件夹，也可能是 OBB 备份。\r\n作为应用数据还原吗？\r\n\r\n(There are only files here and no subfolders, so this may also be a backup of OBB files. Restore it as the app\'s data?)"_s) +
      u"\r\n"_s + copy;
  box.icon = BoxIcon::Warning;
  box.buttons = BoxButtons::YesNo;
  box.preselected = BoxAnswer::No;
  const BoxAnswer answer = co_await m_menu.showBox(box);
  co_return answer == BoxAnswer::Yes;
}

QCoro::Task<> DataCopy::push(QString package, QString copy) {
  const Host host = Host::current();
  const QString question = sizesLine(host, dataPathOnDevice(package));
  const QString reply = co_await m_menu.ask(question);
  // If files are there already, their number does not tell how many have arrived.
  const bool countable = sizesIn(reply).files == 0;
  const PushProgress progress(m_menu.bench().turn, question, countable ? localSizes(copy).bytes : 0);
  co_await m_menu.execute(pushDataLine(host, copy));
}

}  // namespace orvanta
