#include "install/uninstall_workflow.h"

#include "core/main_window.h"
#include "core/tools.h"
#include "install/command_lines.h"
#include "install/device_storage.h"

using namespace Qt::StringLiterals;

namespace orvanta {

UninstallWorkflow::UninstallWorkflow(apkinfo& form) : m_form(form) {
  connect(form.Command4, &QPushButton::clicked, this, &UninstallWorkflow::Command4_Click);
  connect(form.Command5, &QPushButton::clicked, this, &UninstallWorkflow::Command5_Click);
}

QCoro::Task<> UninstallWorkflow::Command4_Click() {
  const auto turn = m_form.turn().begin();
  if (!turn) co_return;
  m_form.WatcherHold = true;
  const bool installed = co_await isInstalled();
  if (installed) {
    const QString Reply = co_await uninstall(false);
    tellOfConnection(Reply);
  }
  m_form.WatcherHold = false;
}

QCoro::Task<> UninstallWorkflow::Command5_Click() {
  const auto turn = m_form.turn().begin();
  if (!turn) co_return;
  m_form.WatcherHold = true;
  bool goOn = co_await isInstalled();
  if (goOn) {
    MessageBox warning;
    warning.title = u"卸载并保留数据"_s;
    warning.text =
        u"只能在以后重新安装APK有相同的签名时\r\n没有正确的签名，APK将无法在以后重新安装！！！\r\n\r\n你确定吗？"_s;
    warning.buttons = BoxButtons::YesNo;
    const BoxAnswer answer = co_await m_form.desktop().showBox(warning);
    goOn = answer == BoxAnswer::Yes;
  }
  if (goOn) co_await uninstall(true);
  if (goOn && !m_form.turn().stopped()) {
    const QString package = m_form.Label2->Caption();
    sayFolderRemoval(m_form, package);
    const StorageAnswer storage = co_await removeObbFolder(m_form, package);
    m_form.txtOutputs->append(u"\r\n完毕！"_s);
    m_form.txtOutputs->moveToEnd();
    tellOfConnection(storage.reply);
  }
  m_form.WatcherHold = false;
}

QCoro::Task<bool> UninstallWorkflow::isInstalled() {
  const QString package = m_form.Label2->Caption();
  const QString line = packageListLine(Host::current());
  const QString Reply = co_await m_form.runQuietly(*m_form.objDOS, line);
  // A list that the user cut short says nothing about the package.
  if (m_form.turn().stopped()) co_return false;
  // Every text contains the empty one, but no package is called so.
  if (!package.isEmpty() && Reply.contains(package)) co_return true;
  m_form.desktop().Beep();
  m_form.say(u"Package "_s + package + u"未安装"_s);
  co_return false;
}

QCoro::Task<QString> UninstallWorkflow::uninstall(bool keepData) {
  const QString package = m_form.Label2->Caption();
  m_form.say(u"Try connecting Device for APK-uninstall ("_s + package + u')');
  co_await Pause(0.2);
  if (!isFitPackageName(package)) {
    m_form.say(u"包名不可用，不卸载 (No usable package name: nothing is uninstalled): "_s + package);
    co_return QString();
  }
  const Host host = Host::current();
  const QString line = keepData ? uninstallKeepingDataLine(host, package) : uninstallLine(host, package);
  const QString Reply = co_await m_form.objDOS->ExecuteCommand(line);
  co_return Reply;
}

void UninstallWorkflow::tellOfConnection(const QString& Reply) {
  if (!Reply.contains("connect error"_L1) && !Reply.contains("cannot Connect"_L1)) return;
  m_form.desktop().Beep();
  m_form.say(u"Connection Error"_s);
}

}  // namespace orvanta
