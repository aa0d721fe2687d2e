#include "install/uninstall_workflow.h"

#include "adb/device_names.h"
#include "adb/lines.h"
#include "adb/replies.h"
#include "core/pause.h"
#include "core/workbench.h"
#include "install/device_storage.h"
#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {
constexpr qsizetype longestShownReply = 1000;
}

UninstallWorkflow::UninstallWorkflow(Workbench& bench) : m_bench(bench) {}

QCoro::Task<> UninstallWorkflow::Command4_Click() {
  const auto turn = m_bench.turn.begin();
  if (!turn) co_return;
  m_bench.state.WatcherHold = true;
  const bool installed = co_await isInstalled();
  if (installed) {
    const QString Reply = co_await uninstall(false);
    tellOfConnection(Reply);
  }
  m_bench.state.WatcherHold = false;
  giveVerdict();
}

QCoro::Task<> UninstallWorkflow::Command5_Click() {
  const auto turn = m_bench.turn.begin();
  if (!turn) co_return;
  m_bench.state.WatcherHold = true;
  bool goOn = co_await isInstalled();
  bool declined = false;
  if (goOn) {
    MessageBox warning;
    warning.title = designed(u"卸载并保留数据");
    warning.text = designed(
        u"只能在以后重新安装APK有相同的签名时\r\n没有正确的签名，APK将无法在以后重新安装！！！\r\n\r\n你确定"
        u"吗？");
    warning.buttons = BoxButtons::YesNo;
    const BoxAnswer answer = co_await m_bench.desktop.showBox(warning);
    goOn = answer == BoxAnswer::Yes;
    declined = !goOn;
  }
  if (goOn) {
    const QString Reply = co_await uninstall(true);
    if (!m_bench.turn.stopped()) co_await removeExpansionFiles(Reply);
  }
  m_bench.state.WatcherHold = false;
  if (!declined) giveVerdict();
}

QCoro::Task<> UninstallWorkflow::removeExpansionFiles(QString uninstallReply) {
  const QString package = m_bench.state.package.package();
  const QString unreported =
      inFace(u"adb 没有报告卸载成功"_s, u"adb did not report a successful uninstall"_s);
  const bool removes = co_await mayRemoveObbFolder(m_bench, package, uninstallReply, unreported);
  StorageAnswer storage;
  if (removes) {
    sayFolderRemoval(m_bench, package);
    storage = co_await removeObbFolder(m_bench, package);
  } else {
    storage = co_await askStorage(m_bench);
  }
  m_bench.console.append(u"\r\n"_s + designed(u"完毕！"));
  tellOfConnection(storage.reply);
}

QCoro::Task<bool> UninstallWorkflow::isInstalled() {
  m_run = {};
  m_uninstallReply.clear();
  const QString package = m_bench.state.package.package();
  const QString line = packageListLine(Host::current());
  const QString Reply = co_await m_bench.runQuietly(m_bench.objDOS, line);
  // A list that the user cut short says nothing about the package.
  if (m_bench.turn.stopped()) co_return false;
  // Every text contains the empty one, but no package has an empty name.
  if (!package.isEmpty() && Reply.contains(package)) co_return true;
  m_bench.desktop.Beep();
  m_bench.say(designed(u"Package %1未安装").arg(package));
  m_run.absent = listsPackages(Reply);
  if (!m_run.absent) {
    m_run.uninstall = uninstallOutcome(Reply);
    const QString words = Reply.trimmed().left(longestShownReply);
    m_bench.say(words.isEmpty() ? inFace(u"头显没有回答"_s, u"The headset gave no answer"_s) : words);
  }
  co_return false;
}

QCoro::Task<QString> UninstallWorkflow::uninstall(bool keepData) {
  const QString package = m_bench.state.package.package();
  m_bench.say(designed(u"Try connecting Device for APK-uninstall (%1)").arg(package));
  co_await Pause(0.2);
  if (!isFitPackageName(package)) {
    m_bench.say(inFace(u"包名不可用，不卸载"_s, u"No usable package name: nothing is uninstalled"_s) +
                u": "_s + package);
    co_return QString();
  }
  m_run.dataKept = keepData;
  const Host host = Host::current();
  const QString line = keepData ? uninstallKeepingDataLine(host, package) : uninstallLine(host, package);
  const QString Reply = co_await m_bench.objDOS.ExecuteCommand(line);
  m_run.uninstall = uninstallOutcome(Reply);
  m_uninstallReply = Reply;
  m_bench.state.forgetRoom();
  co_return Reply;
}

void UninstallWorkflow::giveVerdict() {
  m_run.stopped = m_bench.turn.stopped();
  if (m_run.uninstall && m_run.uninstall->kind != Outcome::Kind::Success)
    m_bench.console.pointOut(tellingLine(withoutServerNotes(m_uninstallReply)));
  m_bench.status.setVerdict(verdictOn(m_run));
}

void UninstallWorkflow::tellOfConnection(const QString& Reply) {
  if (!saysConnectionLost(Reply)) return;
  m_bench.desktop.Beep();
  m_bench.say(designed(u"Connection Error"));
}

}  // namespace orvanta
