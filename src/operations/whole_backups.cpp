#include "operations/whole_backups.h"

#include <QFileInfo>
#include <QStorageInfo>
#include <algorithm>

#include "adb/device_names.h"
#include "adb/lines.h"
#include "adb/outcome.h"
#include "adb/replies.h"
#include "backups/app_backup.h"
#include "core/paths.h"
#include "operations/safe_pull.h"
#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

/// "A", or "A, B … (12)".
QString someOf(const QList<ChosenApp>& apps) {
  constexpr qsizetype named = 2;
  QStringList names;
  for (const ChosenApp& app : apps.first(std::min(named, apps.size()))) names << app.name();
  QString text = names.join(u", "_s);
  if (apps.size() > named) text += u" … (%1)"_s.arg(apps.size());
  return text;
}

}  // namespace

WholeBackups::WholeBackups(MenuContext& menu) : m_menu(menu) {
  const Form4& window = menu.window();
  connect(window.cmdBackup, &QPushButton::clicked, this, &WholeBackups::cmdBackup_Click);
  connect(window.cmdRestore, &QPushButton::clicked, this, &WholeBackups::cmdRestore_Click);
  connect(window.cmdCheck, &QPushButton::clicked, this, &WholeBackups::cmdCheck_Click);
  connect(window.cmdUninstall, &QPushButton::clicked, this, &WholeBackups::cmdUninstall_Click);
}

/// The chosen apps. The user is told when there are none.
QCoro::Task<QList<ChosenApp>> WholeBackups::askChosen() {
  QList<ChosenApp> chosen = m_menu.window().chosenApps();
  if (chosen.isEmpty())
    co_await m_menu.showInformation(inFace(u"没有选择应用"_s, u"No app is chosen"_s), designed(u"Info"));
  co_return chosen;
}

QCoro::Task<QString> WholeBackups::askFolder(QString title) {
  const QString folder = co_await m_menu.desktop().askFolder(title);
  if (folder.isEmpty() || FolderExists(folder)) co_return QString(folder);
  co_await m_menu.showError(inFace(u"没有这个文件夹"_s, u"There is no such folder"_s) + u": "_s + folder);
  co_return QString();
}

QCoro::Task<QList<SavedApp>> WholeBackups::askBackups(QString title) {
  QList<SavedApp> found;
  const QString folder = co_await askFolder(title);
  if (folder.isEmpty()) co_return found;
  settleCopies(m_menu.bench());
  found = savedAppsIn(folder);
  if (found.isEmpty())
    co_await m_menu.showError(inFace(u"这里没有备份"_s, u"There is no backup here"_s) + u": "_s + folder);
  co_return found;
}

/// The headset that answers. If the list is of another one, the user is asked whether to go on. Nothing if no
/// headset answers, or after a no.
QCoro::Task<std::optional<HeadsetIdentity>> WholeBackups::askHeadset() {
  std::optional<HeadsetIdentity> headset;
  const QString reply = co_await m_menu.ask(headsetLine(Host::current()));
  const HeadsetIdentity answering = headsetIn(reply);
  if (m_menu.bench().turn.stopped()) co_return headset;
  if (answering.serial.isEmpty()) {
    QString words = tellingLine(reply);
    if (words.isEmpty()) words = inFace(u"设备没有回答"_s, u"The headset gave no answer"_s);
    co_await m_menu.showError(words);
    co_return headset;
  }
  const bool same = co_await m_menu.isHeadsetOfList(answering);
  if (same) headset = answering;
  co_return headset;
}

QCoro::Task<bool> WholeBackups::hasRoom(QString folder, qint64 bytes) {
  const QStorageInfo disk(folder);
  if (!disk.isValid() || disk.bytesAvailable() >= bytes) co_return true;
  MessageBox box;
  box.text =
      inFace(
          u"电脑磁盘的空间可能不够：需要约 %1，可用 %2。\r\n能放下的仍会备份。继续吗？"_s,
          u"There may be too little room on this computer\'s disk: about %1 needed, %2 free.\r\nWhat fits is backed up. Go on?"_s,
          u"电脑磁盘的空间可能不够：需要约 %1，可用 %2。\r\n能放下的仍会备份。继续吗？\r\n\r\n(There may be too little room on this computer\'s disk. What fits is backed up. Go on?)"_s)
          .arg(readableSize(bytes), readableSize(disk.bytesAvailable()));
  box.icon = BoxIcon::Warning;
  box.buttons = BoxButtons::YesNo;
  box.preselected = BoxAnswer::No;
  const BoxAnswer answer = co_await m_menu.showBox(box);
  co_return answer == BoxAnswer::Yes;
}

/// Successes go to the line above the list, failures to a box as well.
QCoro::Task<> WholeBackups::tell(QString done, qsizetype all, QList<RestoreOutcome> outcomes) {
  QStringList bad;
  QString news;
  for (const RestoreOutcome& outcome : outcomes) {
    if (!outcome.good) bad << outcome.text;
    if (outcomes.size() == 1) news = outcome.text;
  }
  const qsizetype good = outcomes.size() - bad.size();
  if (all != 1) news = (good == all ? u"✓ "_s : u"✗ "_s) + done + u": %1 / %2"_s.arg(good).arg(all);
  if (!bad.isEmpty()) {
    if (all != 1) bad.prepend(news + u"\r\n"_s);
    co_await m_menu.showError(bad.join(u"\r\n"_s));
  }
  m_menu.window().sayOutcome({news});
}

QCoro::Task<> WholeBackups::cmdBackup_Click() {
  const auto turn = m_menu.bench().turn.begin();
  if (!turn) co_return;
  const QList<ChosenApp> chosen = co_await askChosen();
  if (chosen.isEmpty()) co_return;
  const QString title = inFace(u"全部备份"_s, u"Back up everything"_s) + u": "_s + someOf(chosen);
  const QString folder = co_await askFolder(title);
  if (folder.isEmpty()) co_return;
  const auto headset = co_await askHeadset();
  if (!headset) co_return;
  QList<AppToSave> apps;
  qint64 bytes = 0;
  for (const ChosenApp& app : chosen) {
    apps << AppToSave{app.package, app.label, app.bytes};
    bytes += app.bytes;
  }
  const bool room = co_await hasRoom(folder, bytes);
  if (!room) co_return;
  BackupRun run(m_menu.bench(), *m_menu.window().objDOS, folder, *headset);
  run.onApp = [this, all = apps.size()](int number, const AppToSave& app) {
    m_menu.window().sayWork(u"%1 / %2 · %3"_s.arg(QString::number(number), QString::number(all), app.name()));
  };
  const QList<BackupOutcome> outcomes = co_await run.save(apps);
  m_menu.window().sayWork({});
  QList<RestoreOutcome> told;
  for (const BackupOutcome& outcome : outcomes)
    told << RestoreOutcome{outcome.kind == BackupOutcome::Kind::Saved && outcome.unreadable.isEmpty(),
                           outcome.endsRun(), outcome.text()};
  const bool any = std::any_of(outcomes.begin(), outcomes.end(), [](const BackupOutcome& outcome) {
    return outcome.kind == BackupOutcome::Kind::Saved;
  });
  if (any) m_menu.presentFolder(folder);
  co_await tell(inFace(u"已备份"_s, u"backed up"_s), apps.size(), told);
}

QCoro::Task<> WholeBackups::cmdRestore_Click() {
  const auto turn = m_menu.bench().turn.begin();
  if (!turn) co_return;
  const QList<SavedApp> backups = co_await askBackups(
      inFace(u"选择一个备份，或放备份的文件夹"_s, u"Choose a backup, or the folder that has them"_s));
  if (backups.isEmpty()) co_return;
  const auto headset = co_await askHeadset();
  if (!headset) co_return;
  RestoreRun run(m_menu.bench(), *m_menu.window().objDOS);
  run.onBackup = [this, &run](int number, const SavedApp& saved) {
    m_menu.window().sayWork(
        u"%1 / %2 · %3"_s.arg(QString::number(number), QString::number(run.count()), saved.title()));
  };
  const QList<RestoreOutcome> outcomes = co_await run.restore(backups);
  m_menu.window().sayWork({});
  if (outcomes.isEmpty()) co_return;
  if (std::any_of(outcomes.begin(), outcomes.end(), [](const RestoreOutcome& one) { return one.good; }))
    m_menu.desktop().Beep();
  co_await tell(inFace(u"已还原"_s, u"restored"_s), run.count(), outcomes);
}

QCoro::Task<> WholeBackups::cmdCheck_Click() {
  const auto turn = m_menu.bench().turn.begin();
  if (!turn) co_return;
  const QList<SavedApp> backups = co_await askBackups(inFace(
      u"选择要检查的备份，或放备份的文件夹"_s, u"Choose a backup to check, or the folder that has them"_s));
  if (backups.isEmpty()) co_return;
  RestoreRun run(m_menu.bench(), *m_menu.window().objDOS);
  const QList<RestoreOutcome> outcomes = co_await run.check(backups);
  co_await tell(inFace(u"完好"_s, u"sound"_s), backups.size(), outcomes);
}

QCoro::Task<RestoreOutcome> WholeBackups::uninstall(ChosenApp app) {
  RestoreOutcome outcome{
      false, false, u"✗ "_s + app.name() + u": "_s + inFace(u"包名不可用"_s, u"no usable package name"_s)};
  if (app.package.isEmpty() || !isFitPackageName(app.package)) co_return outcome;
  const QString reply = co_await m_menu.ask(uninstallLine(Host::current(), app.package));
  m_menu.bench().state.forgetRoom();
  const bool stopped = m_menu.bench().turn.stopped();
  const Outcome said = uninstallOutcome(reply);
  outcome.good = said.kind == Outcome::Kind::Success;
  outcome.ends = stopped || said.kind == Outcome::Kind::NotReached;
  QString words = (said.words + u' ' + said.sentence.shown()).trimmed();
  if (stopped) words = inFace(u"已停止"_s, u"stopped"_s);
  if (outcome.good) words = inFace(u"已卸载"_s, u"uninstalled"_s);
  outcome.text = (outcome.good ? u"✓ "_s : u"✗ "_s) + app.name() + u": "_s + words;
  co_return outcome;
}

QCoro::Task<> WholeBackups::cmdUninstall_Click() {
  const auto turn = m_menu.bench().turn.begin();
  if (!turn) co_return;
  const QList<ChosenApp> chosen = co_await askChosen();
  if (chosen.isEmpty()) co_return;
  const auto headset = co_await askHeadset();
  if (!headset) co_return;
  MessageBox box;
  box.title = designed(u"卸载");
  box.text =
      inFace(u"卸载这 %1 个应用，连同它们的数据？\r\n"_s, u"Uninstall these %1 apps with their data?\r\n"_s,
             u"卸载这 %1 个应用，连同它们的数据？\r\n(Uninstall these apps with their data?)\r\n"_s)
          .arg(chosen.size());
  for (const ChosenApp& app : chosen) box.text += u"\r\n"_s + app.label + u"  "_s + app.package;
  box.icon = BoxIcon::Warning;
  box.buttons = BoxButtons::YesNo;
  box.preselected = BoxAnswer::No;
  const BoxAnswer answer = co_await m_menu.showBox(box);
  if (answer != BoxAnswer::Yes) co_return;
  QList<RestoreOutcome> outcomes;
  for (const ChosenApp& app : chosen) {
    const RestoreOutcome outcome = co_await uninstall(app);
    const bool ends = outcome.ends;
    m_menu.bench().say(outcome.text);
    outcomes << outcome;
    if (ends) break;
  }
  co_await tell(inFace(u"已卸载"_s, u"uninstalled"_s), chosen.size(), outcomes);
}

}  // namespace orvanta
