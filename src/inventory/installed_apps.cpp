#include "inventory/installed_apps.h"

#include <QFileInfo>

#include "adb/lines.h"
#include "adb/replies.h"
#include "core/workbench.h"
#include "inventory/script.h"
#include "inventory/shortcomings.h"
#include "platform/awaited.h"
#include "platform/script_place.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

InstalledApps::InstalledApps(Workbench& bench, QWidget& mainWindow)
    : m_bench(bench), m_mainWindow(mainWindow), m_Form4(bench, bench.turn) {
  connect(&m_Form5, &Form5::stopRequested, &bench.turn, &Turn::requestStop);
  connect(m_Form4.objDOS.get(), &DOSOutputs::ReceiveOutputs, this, &InstalledApps::objDOS_ReceiveOutputs);
  connect(m_Form4.cmdRefresh, &QPushButton::clicked, this, &InstalledApps::cmdRefresh_Click);
  connect(&m_Form4, &Form4::unloaded, this, &InstalledApps::Form4_unloaded);
}

InstalledApps::~InstalledApps() = default;

QCoro::Task<> InstalledApps::Command9_Click() {
  if (m_bench.state.InstalledAppsClosed()) co_return;
  const auto turn = m_bench.turn.begin();
  if (!turn) co_return;
  m_bench.state.WatcherHold = true;
  m_mainWindow.hide();
  m_Form5.centreOnScreen(*m_mainWindow.screen());
  m_Form5.show();
  m_bench.state.WatcherHold = false;
  const bool lives = co_await Emitted(m_Form5.Timer1, &QTimer::timeout);
  if (lives) co_await loadForm4();
}

QCoro::Task<> InstalledApps::loadForm4() {
  m_Form4.setEnabled(false);
  m_Form4.prepareLoad();
  co_await askCount();
  m_Form5.Label1->setCaption(processingText(m_AppCountText));

  InventoryOutcome outcome;
  co_await runScript(outcome);
  m_InventoryDone = true;

  const Inventory inventory = readInventory(m_ScriptOutput);
  m_Form4.fill(inventory);
  outcome.AppCountText = m_AppCountText;
  const HeadsetIdentity headset = co_await askHeadset();
  m_Form4.noteRead(headset);
  show(inventory, outcome);
  m_icons.show(outcome.hasBadgingTool);
  m_Form5.hide();
  m_Form4.setEnabled(true);
  m_ScriptOutput.clear();
  m_Form4.centreOnScreen(*m_mainWindow.screen());
  m_Form4.show();
  m_Form4.activateWindow();
  m_Form4.MSFlexGrid1->setFocus();
}

/// Says what the reading lacks.
void InstalledApps::show(const Inventory& inventory, InventoryOutcome& outcome) {
  outcome.stopped = m_bench.turn.stopped();
  outcome.apps = inventory.apps.size();
  outcome.words = inventory.words;
  outcome.cut = inventory.cut;
  for (const InventoryApp& app : inventory.apps) {
    outcome.anyLabel |= !app[ColAppName].trimmed().isEmpty();
    outcome.anySize |= !app[ColUsedSpace].trimmed().isEmpty();
    outcome.anySpace |= cellValue(CellKind::Size, app[ColUsedSpace]) > 0;
  }
  m_Form4.setNotice(shortcomingsOf(outcome));
}

QCoro::Task<HeadsetIdentity> InstalledApps::askHeadset() {
  const QString reply = co_await m_Form4.objDOS->ExecuteCommand(headsetLine(Host::current()));
  HeadsetIdentity headset = headsetIn(withoutServerNotes(reply));
  co_return headset;
}

QCoro::Task<> InstalledApps::cmdRefresh_Click() {
  const auto turn = m_bench.turn.begin();
  if (!turn) co_return;
  const QString problem = co_await readAgain();
  if (problem.isEmpty()) co_return;
  m_Form4.sayOutcome({u"✗ "_s + inFace(u"没有刷新，列表没有变"_s, u"Not refreshed, the list is as it was"_s) +
                      u": "_s + problem});
}

/// Why the list could not be read; empty when it was.
QCoro::Task<QString> InstalledApps::readAgain() {
  const QString stopped = inFace(u"已停止"_s, u"stopped"_s);
  const HeadsetIdentity headset = co_await askHeadset();
  if (m_bench.turn.stopped()) co_return QString(stopped);
  const bool silent = headset.serial.isEmpty();
  if (silent) {
    QString words = tellingLine(withoutServerNotes(m_Form4.objDOS->Outputs()));
    if (words.isEmpty()) words = inFace(u"设备没有回答"_s, u"The headset gave no answer"_s);
    co_return words;
  }
  m_Form4.noteAnswering(headset);
  if (m_Form4.isOfAnotherHeadset()) {
    MessageBox box;
    box.text =
        inFace(
            u"现在连接的是另一台头显：%1。读取它的应用吗？"_s,
            u"Another headset answers now: %1. Read its apps in the place of these?"_s,
            u"现在连接的是另一台头显：%1。读取它的应用吗？\r\n\r\n(Another headset answers now. Read its apps in the place of these?)"_s)
            .arg(headset.name());
    box.icon = BoxIcon::Question;
    box.buttons = BoxButtons::YesNo;
    m_bench.turn.noteQuestion();
    const BoxAnswer answer = co_await m_bench.desktop.showBox(box);
    if (answer != BoxAnswer::Yes) co_return QString(inFace(u"另一台头显"_s, u"another headset"_s));
  }
  const Host host = Host::current();
  const QString tool = badgingToolPath(host.applicationFolder);
  InventoryOutcome outcome;
  outcome.hasBadgingTool = QFileInfo::exists(tool);
  if (outcome.hasBadgingTool)
    co_await m_Form4.objDOS->ExecuteCommand(pushLine(host, tool, u"/data/local/tmp"_s));
  const QString output = co_await m_Form4.objDOS->ExecuteCommand(inventoryLine(host, outcome.hasBadgingTool));
  const Inventory inventory = readInventory(output);
  if (m_bench.turn.stopped()) co_return QString(stopped);
  if (inventory.cut || inventory.apps.isEmpty()) {
    outcome.apps = inventory.apps.size();
    outcome.words = inventory.words;
    outcome.cut = inventory.cut;
    co_return shortcomingsOf(outcome);
  }
  m_Form4.refill(inventory);
  m_Form4.noteRead(headset);
  show(inventory, outcome);
  m_icons.show(outcome.hasBadgingTool);
  co_return QString();
}

QCoro::Task<> InstalledApps::askCount() {
  const QString reply = co_await m_Form4.objDOS->ExecuteCommand(packageCountLine());
  m_AppCountText = cleanedCount(withoutServerNotes(reply));
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
  m_bench.state.closeInstalledApps();
  m_mainWindow.show();
  m_mainWindow.activateWindow();
}

}  // namespace orvanta
