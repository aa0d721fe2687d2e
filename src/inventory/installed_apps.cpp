#include "inventory/installed_apps.h"

#include <QFileInfo>

#include "core/main_window.h"
#include "core/tools.h"
#include "inventory/cell_text.h"
#include "inventory/script.h"
#include "inventory/shortcomings.h"
#include "platform/script_place.h"
#include "ui/awaited.h"

using namespace Qt::StringLiterals;

namespace orvanta {

InstalledApps::InstalledApps(apkinfo& form) : m_form(form), m_Form4(form, form.turn()) {
  connect(form.Command9, &QPushButton::clicked, this, &InstalledApps::Command9_Click);
  connect(&m_Form5, &Form5::stopRequested, &form.turn(), &Turn::requestStop);
  connect(m_Form4.objDOS.get(), &DOSOutputs::ReceiveOutputs, this, &InstalledApps::objDOS_ReceiveOutputs);
  connect(&m_Form4, &Form4::unloaded, this, &InstalledApps::Form4_unloaded);
}

InstalledApps::~InstalledApps() = default;

QCoro::Task<> InstalledApps::Command9_Click() {
  if (m_form.module().InstalledAppsClosed) co_return;
  const auto turn = m_form.turn().begin();
  if (!turn) co_return;
  m_form.WatcherHold = true;
  m_form.hide();
  m_Form5.show();
  m_form.WatcherHold = false;
  co_await Emitted(m_Form5.Timer1, &QTimer::timeout);
  co_await loadForm4();
}

QCoro::Task<> InstalledApps::loadForm4() {
  m_Form4.setEnabled(false);
  m_Form4.prepareLoad();
  co_await askCount();
  m_Form5.Label1->setCaption(u"Processing Apps: 0 of "_s + m_AppCountText);

  InventoryOutcome outcome;
  co_await runScript(outcome);
  m_InventoryDone = true;

  const Inventory inventory = readInventory(m_ScriptOutput);
  m_Form4.fill(inventory);
  outcome.stopped = m_form.turn().stopped();
  outcome.AppCountText = m_AppCountText;
  outcome.apps = inventory.apps.size();
  outcome.words = inventory.words;
  outcome.cut = inventory.cut;
  for (const InventoryApp& app : inventory.apps) {
    outcome.anyLabel |= !app[ColAppName].trimmed().isEmpty();
    outcome.anySize |= tenthsIn(app[ColUsedSpace]) > 0;
  }
  m_Form4.setNotice(shortcomingsOf(outcome));
  m_Form5.hide();
  m_Form4.setEnabled(true);
  m_ScriptOutput.clear();
  m_Form4.show();
  m_Form4.activateWindow();
  m_Form4.MSFlexGrid1->setFocus();
}

QCoro::Task<> InstalledApps::askCount() {
  const QString line = u"adb shell "_s + QuoteChar + u"pm list packages -3 |wc -l"_s + QuoteChar;
  const QString reply = co_await m_Form4.objDOS->ExecuteCommand(line);
  m_AppCountText = cleanedCount(reply);
}

QCoro::Task<> InstalledApps::runScript(InventoryOutcome& outcome) {
  const Host host = Host::current();
  outcome.hasBadgingTool = QFileInfo::exists(badgingToolPath(host.applicationFolder));
  const ScriptPlace script(inventoryScript(host));
  outcome.scriptFailure = script.failure();
  if (script.commandLine().isEmpty()) co_return;
  co_await m_Form4.objDOS->ExecuteCommand(script.commandLine());
}

void InstalledApps::objDOS_ReceiveOutputs(const QString& CommandOutputs) {
  if (m_InventoryDone) return;
  m_ScriptOutput += CommandOutputs;
  m_counter.feed(CommandOutputs);
  if (m_AppCountText.isEmpty()) m_AppCountText = u"0"_s;
  m_Form5.Label1->setCaption(progressCaption(m_counter.apps(), m_AppCountText));
  m_Form5.drawBar(progressBarTwips(progressPercent(m_counter.apps(), m_AppCountText)));
}

void InstalledApps::Form4_unloaded() {
  m_form.module().InstalledAppsClosed = true;
  m_form.Command9->setEnabled(false);
  m_form.show();
  m_form.activateWindow();
}

}  // namespace orvanta
