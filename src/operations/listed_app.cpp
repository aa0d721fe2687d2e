#include "operations/listed_app.h"

#include <QClipboard>
#include <QGuiApplication>

#include "core/tools.h"
#include "operations/command_lines.h"
#include "operations/replies.h"

using namespace Qt::StringLiterals;

namespace orvanta {

ListedApp::ListedApp(MenuContext& menu) : m_menu(menu) {
  connect(menu.window().mnu_startAPK, &QAction::triggered, this, &ListedApp::mnu_startAPK_Click);
  connect(menu.window().mnu_uninstall, &QAction::triggered, this, &ListedApp::mnu_uninstall_Click);
  connect(menu.window().mnuCopy, &QAction::triggered, this, &ListedApp::mnuCopy_Click);
}

QCoro::Task<> ListedApp::mnu_startAPK_Click() {
  const auto turn = m_menu.form().turn().begin();
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
  const auto turn = m_menu.form().turn().begin();
  if (!turn) co_return;
  const QString cell = m_menu.window().CellText(ColPackage);
  const QString package = m_menu.window().SelectedPackage();
  if (cell == m_LastUninstalled) {
    MessageBox box;
    box.text = u"APK already uninstalled"_s;
    box.title = u"Info"_s;
    co_await m_menu.showBox(box);
    co_return;
  }
  m_LastUninstalled = cell;
  const bool usable = co_await m_menu.isUsable(package);
  if (!usable) co_return;
  co_await m_menu.execute(uninstallListedLine(Host::current(), package));
  if (!saysUninstalled(m_menu.LastReply)) {
    co_await m_menu.showError(m_menu.told());
    co_return;
  }
  MessageBox box;
  box.text = u"成功，APK已卸载"_s;
  box.title = u"Info"_s;
  co_await m_menu.showBox(box);
}

void ListedApp::mnuCopy_Click() {
  const FlexGrid& grid = *m_menu.window().MSFlexGrid1;
  QClipboard* clipboard = QGuiApplication::clipboard();
  clipboard->clear();
  clipboard->setText(grid.TextMatrix(grid.Row(), grid.Col()).trimmed());
}

}  // namespace orvanta
