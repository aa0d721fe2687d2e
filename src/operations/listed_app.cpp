#include "operations/listed_app.h"

#include <QClipboard>
#include <QGuiApplication>

#include "adb/lines.h"
#include "adb/outcome.h"
#include "adb/replies.h"
#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

ListedApp::ListedApp(MenuContext& menu) : m_menu(menu) {
  connect(menu.window().mnu_startAPK, &QAction::triggered, this, &ListedApp::mnu_startAPK_Click);
  connect(menu.window().mnu_uninstall, &QAction::triggered, this, &ListedApp::mnu_uninstall_Click);
  connect(menu.window().mnuCopy, &QAction::triggered, this, &ListedApp::mnuCopy_Click);
}

QCoro::Task<> ListedApp::mnu_startAPK_Click() {
  const auto turn = m_menu.bench().turn.begin();
  if (!turn) co_return;
  const QString package = m_menu.window().SelectedPackage();
  const bool usable = co_await m_menu.isUsable(package);
  if (!usable) co_return;
  co_await m_menu.execute(launchLine(Host::current(), package, launcherCategory));
  if (saysNoActivity(m_menu.LastReply))
    co_await m_menu.execute(launchLine(Host::current(), package, immersiveCategory));
  if (!saysLaunched(m_menu.LastReply)) co_await m_menu.showError(m_menu.told());
}

QCoro::Task<> ListedApp::mnu_uninstall_Click() {
  const auto turn = m_menu.bench().turn.begin();
  if (!turn) co_return;
  const QString cell = m_menu.window().CellText(ColPackage);
  const QString package = m_menu.window().SelectedPackage();
  if (cell == m_LastUninstalled) {
    MessageBox box;
    box.text = designed(u"APK already uninstalled");
    box.title = designed(u"Info");
    co_await m_menu.showBox(box);
    co_return;
  }
  const bool usable = co_await m_menu.isUsable(package);
  if (!usable) co_return;
  co_await m_menu.execute(uninstallLine(Host::current(), package));
  m_menu.bench().state.forgetRoom();
  // A run that was stopped, did not start or did not reach the headset may be repeated.
  const Outcome::Kind kind = uninstallOutcome(m_menu.LastReply).kind;
  const bool answered = kind != Outcome::Kind::Empty && kind != Outcome::Kind::NotReached;
  if (answered && !m_menu.bench().turn.stopped()) m_LastUninstalled = cell;
  if (!saysUninstalled(m_menu.LastReply)) {
    co_await m_menu.showError(m_menu.told());
    co_return;
  }
  MessageBox box;
  box.text = designed(u"成功，APK已卸载");
  box.title = designed(u"Info");
  co_await m_menu.showBox(box);
}

void ListedApp::mnuCopy_Click() {
  if (m_menu.window().MSFlexGrid1->Row() < 1) return;
  const QString text = m_menu.window().SelectedText();
  if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

}  // namespace orvanta
