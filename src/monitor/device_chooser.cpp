#include "monitor/device_chooser.h"

#include <QHeaderView>
#include <QKeyEvent>

#include "adb/chosen_device.h"
#include "adb/lines.h"
#include "adb/network.h"
#include "adb/replies.h"
#include "core/busy_tools.h"
#include "core/pause.h"
#include "core/workbench.h"
#include "monitor/connection.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int widthTwips = 9600;
constexpr int heightTwips = 6600;
constexpr int margin = 8;
constexpr int gap = 6;
constexpr int rowHeight = 26;
constexpr int lineHeight = 24;
constexpr int frameCaption = 21;
constexpr int modelWidth = 130;
constexpr qsizetype mostRemembered = 5;
// adb on the headset starts itself anew first.
constexpr int triesAfterListening = 6;

const QString rememberedSection = u"Headsets"_s;

/// What a state means to somebody who chooses, in adb's words where they tell more.
QString stateText(const ListedDevice& device) {
  switch (device.state) {
    case ListedDevice::State::Device:
      return u"可用 (Ready)"_s;
    case ListedDevice::State::Offline:
      return u"离线 (Offline)"_s;
    case ListedDevice::State::Unauthorized:
      return u"等待“允许” (Not allowed yet)"_s;
    case ListedDevice::State::NoPermissions:
      return u"没有 USB 权限 (No permissions)"_s;
    default:
      return device.words;
  }
}

QTableWidgetItem* cell(const QString& text, const QString& serial) {
  auto* item = new QTableWidgetItem(text);
  item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
  item->setToolTip(text);
  item->setData(Qt::UserRole, serial);
  return item;
}

QLineEdit* edit(const QString& name, const QString& placeholder, QWidget* parent) {
  auto* made = new QLineEdit(parent);
  made->setObjectName(name);
  made->setAccessibleName(placeholder);
  made->setPlaceholderText(placeholder);
  made->setTextMargins(3, 0, 3, 0);
  return made;
}

}  // namespace

DeviceChooser::DeviceChooser(Workbench& bench, SettingsStore& settings, std::function<void()> chosen,
                             QWidget* above)
    : Form(u"deviceChooser"_s, widthTwips, heightTwips, above),
      m_bench(bench),
      m_settings(settings),
      m_chosen(std::move(chosen)) {
  setWindowTitle(u"选择设备 (Headsets)"_s);
  createList();
  createNetwork();
  lblNotice = new Label(u"lblNotice"_s, this);
  busyStrip = new BusyStrip(this);
  again = new Button(u"again"_s, u"刷新 (Refresh)"_s, u"再问一次 adb (Ask adb again)"_s, this);
  use = new Button(u"use"_s, u"使用这台设备 (Use This One)"_s,
                   u"本程序结束前只对它操作 (Until this program ends it works on no other)"_s, this);
  done = new Button(u"done"_s, u"关闭 (Close)"_s, QString(), this);
  QFont strong = use->font();
  strong.setBold(true);
  use->setFont(strong);
  showTools(bench.turn, busyStrip);
  connect(busyStrip, &BusyStrip::inViewChanged, this,
          [this] { lblNotice->setVisible(!busyStrip->inView()); });
  connect(again, &QPushButton::clicked, this, [this] { refresh(); });
  connect(use, &QPushButton::clicked, this, &DeviceChooser::use_Click);
  connect(done, &QPushButton::clicked, this, &DeviceChooser::hide);
  connect(overNetwork, &QPushButton::clicked, this, [this] { overNetwork_Click(); });
  connect(reconnect, &QPushButton::clicked, this, [this] { reconnect_Click(); });
  connect(connectTo, &QPushButton::clicked, this, [this] { connectTo_Click(); });
  for (QLineEdit* field : {address, code})
    connect(field, &QLineEdit::returnPressed, connectTo, &QPushButton::click);
  connect(devices, &QTableWidget::itemSelectionChanged, this, &DeviceChooser::showWhatCanBeDone);
  connect(devices, &QTableWidget::itemActivated, this, &DeviceChooser::use_Click);
  setFocusRefuge(devices);
  list({});
}

void DeviceChooser::createList() {
  devices = new QTableWidget(0, 3, this);
  devices->setObjectName(u"devices"_s);
  devices->setAccessibleName(u"设备 (Devices)"_s);
  devices->setHorizontalHeaderLabels({u"序列号 (Serial)"_s, u"型号 (Model)"_s, u"状态 (State)"_s});
  devices->setSelectionBehavior(QAbstractItemView::SelectRows);
  devices->setSelectionMode(QAbstractItemView::SingleSelection);
  devices->setTabKeyNavigation(false);
  devices->setShowGrid(false);
  devices->setWordWrap(false);
  devices->verticalHeader()->hide();
  devices->verticalHeader()->setDefaultSectionSize(rowHeight);
  devices->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  devices->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Interactive);
  devices->setColumnWidth(1, modelWidth);
  devices->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  devices->horizontalHeader()->setHighlightSections(false);
  lblSteps = new QLabel(this);
  lblSteps->setObjectName(u"lblSteps"_s);
  lblSteps->setWordWrap(true);
  lblSteps->setTextFormat(Qt::PlainText);
  lblSteps->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void DeviceChooser::createNetwork() {
  network = new Frame(u"network"_s, u"无线 (Over the network)"_s, this);
  overNetwork = new Button(u"overNetwork"_s, u"所选设备改用无线 (Use over Wi-Fi)"_s,
                           u"让 USB 连接的头显在 Wi-Fi 上等待连接，直到它重启 (A headset on the cable then "
                           u"waits on the Wi-Fi, until "
                           "it is restarted)"_s,
                           network);
  reconnect = new Button(u"reconnect"_s, u"连接用过的地址 (Reconnect)"_s,
                         u"逐个尝试以前连上过的地址 (Tries the addresses that worked before)"_s, network);
  address = edit(u"address"_s, u"地址:端口 (Address:port)"_s, network);
  code = edit(u"code"_s, u"配对码 (Pairing code)"_s, network);
  connectTo = new Button(u"connectTo"_s, u"连接 / 配对 (Connect / Pair)"_s,
                         u"没有配对码时连接，有配对码时配对 (Connects; with a code it pairs)"_s, network);
}

void DeviceChooser::resizeEvent(QResizeEvent* event) {
  Form::resizeEvent(event);
  if (done != nullptr) arrange();
}

void DeviceChooser::arrange() {
  const auto widthOf = [](const Button* button) { return button->sizeHint().width() + 2 * margin; };
  const int inside = width() - 2 * margin;
  int y = height() - margin - rowHeight;
  const int closing = widthOf(done);
  const int choosing = widthOf(use);
  done->setGeometry(width() - margin - closing, y, closing, rowHeight);
  use->setGeometry(done->x() - gap - choosing, y, choosing, rowHeight);
  again->setGeometry(margin, y, widthOf(again), rowHeight);
  y -= gap + lineHeight;
  lblNotice->setGeometry(margin, y, inside, lineHeight);
  busyStrip->setGeometry(margin, y, inside, lineHeight);
  const int frameHeight = frameCaption + 2 * rowHeight + gap + margin;
  y -= gap + frameHeight;
  network->setGeometry(margin, y, inside, frameHeight);
  const int right = inside - margin;
  const int first = (right - margin - gap) * 3 / 5;
  overNetwork->setGeometry(margin, frameCaption, first, rowHeight);
  reconnect->setGeometry(margin + first + gap, frameCaption, right - margin - first - gap, rowHeight);
  const int second = frameCaption + rowHeight + gap;
  const int connecting = widthOf(connectTo);
  const int fields = right - margin - connecting - 2 * gap;
  address->setGeometry(margin, second, fields * 3 / 5, rowHeight);
  code->setGeometry(margin + fields * 3 / 5 + gap, second, fields - fields * 3 / 5, rowHeight);
  connectTo->setGeometry(right - connecting, second, connecting, rowHeight);
  devices->setGeometry(margin, margin, inside, y - gap - margin);
  lblSteps->setGeometry(devices->geometry().adjusted(margin, 0, -margin, 0));
}

void DeviceChooser::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) hide();
}

QCoro::Task<> DeviceChooser::choose() {
  if (isVisible()) co_return;
  setNotice(QString());
  list({});
  const auto shown = showModal();
  co_await refresh();
  co_await shown;
}

void DeviceChooser::list(const DeviceList& found) {
  const QString before = marked().isEmpty() ? chosenDevice() : marked();
  devices->setRowCount(static_cast<int>(found.devices.size()));
  for (int row = 0; row < devices->rowCount(); ++row) {
    const ListedDevice& device = found.devices[row];
    const bool isChosen = device.serial == chosenDevice();
    devices->setItem(row, 0, cell(isChosen ? u"✓ "_s + device.serial : device.serial, device.serial));
    devices->setItem(row, 1, cell(device.model, device.serial));
    devices->setItem(row, 2, cell(stateText(device), device.serial));
    if (device.serial == before) devices->selectRow(row);
  }
  if (marked().isEmpty() && devices->rowCount() > 0) devices->selectRow(0);
  const Bilingual steps = diagnose({.answer = u"List of devices attached\n"_s}).remedy;
  lblSteps->setText(steps.chinese + u"\n\n"_s + steps.english);
  lblSteps->setVisible(found.headed && found.devices.isEmpty());
  devices->setVisible(!lblSteps->isVisibleTo(this));
  showWhatCanBeDone();
}

QString DeviceChooser::marked() const {
  const auto items = devices->selectedItems();
  return items.isEmpty() ? QString() : items.first()->data(Qt::UserRole).toString();
}

void DeviceChooser::showWhatCanBeDone() {
  const QString serial = marked();
  use->setEnabled(!serial.isEmpty());
  overNetwork->setEnabled(!serial.isEmpty() && !isNetworkSerial(serial));
  reconnect->setEnabled(!remembered().isEmpty());
  reconnect->setToolTip(remembered().join(u'\n'));
}

void DeviceChooser::takeFor(const QString& serial) {
  chooseDevice(serial);
  devices->clearSelection();  // the list comes with the chosen one marked
  m_bench.state.forgetHeadset();
  m_chosen();
}

QStringList DeviceChooser::remembered() const {
  return m_settings.read(rememberedSection, QString()).split(u' ', Qt::SkipEmptyParts);
}

void DeviceChooser::remember(const QString& reached) {
  QStringList all = remembered();
  all.removeAll(reached);
  all.prepend(reached);
  m_settings.write(rememberedSection, all.mid(0, mostRemembered).join(u' '));
}

QCoro::Task<> DeviceChooser::refresh() {
  const auto turn = m_bench.turn.begin();
  if (!turn) co_return;
  setNotice(QString());
  co_await ask();
}

QCoro::Task<> DeviceChooser::ask() {
  const QString line = deviceDetailsLine(Host::current());
  const QString reply = co_await m_bench.runQuietly(m_bench.objDOS, line);
  const DeviceList found = readDevices(reply);
  list(found);
  if (!found.headed && !m_bench.turn.stopped())
    setNotice(u"adb 没有列出设备 (adb gave no list): "_s + tellingLine(reply));
}

QCoro::Task<bool> DeviceChooser::connectAt(QString place, int tries) {
  constexpr double secondsBetween = 1;
  QString reply;
  for (int tried = 0; tried < tries && !m_bench.turn.stopped(); ++tried) {
    if (tried > 0) co_await Pause(secondsBetween);
    reply = co_await m_bench.objDOS.ExecuteCommand(connectLine(Host::current(), place));
    if (!saysConnected(reply)) continue;
    remember(place);
    takeFor(place);
    setNotice(u"已通过网络连接 (Connected over the network): "_s + place);
    co_return true;
  }
  setNotice(m_bench.turn.stopped()
                ? u"已停止 (Stopped)"_s
                : u"没有连上 (Not connected): "_s + tellingLine(withoutServerNotes(reply)));
  co_return false;
}

QCoro::Task<> DeviceChooser::overNetwork_Click() {
  const QString serial = marked();
  const auto turn = m_bench.turn.begin();
  if (!turn || serial.isEmpty()) co_return;
  const Host host = Host::current();
  const QString addresses = co_await m_bench.runQuietly(m_bench.objDOS, addressesLine(host, serial));
  const QString own = networkAddressIn(addresses);
  if (own.isEmpty()) {
    const QString words = tellingLine(addresses);
    setNotice(u"头显没有连上 Wi-Fi (The headset is on no Wi-Fi)"_s +
              (words.contains(u"rror") ? u": "_s + words : QString()));
    co_return;
  }
  const QString reply = co_await m_bench.objDOS.ExecuteCommand(listenLine(host, serial));
  if (!saysListening(reply)) {
    setNotice(u"头显没有照办 (The headset did not do it): "_s + tellingLine(withoutServerNotes(reply)));
    co_return;
  }
  const bool reached = co_await connectAt(own + u':' + networkPort, triesAfterListening);
  if (!reached) co_return;
  co_await ask();
  setNotice(u"已通过网络连接，可以拔下数据线 (Connected over the network; you can unplug the cable): "_s +
            own);
}

QCoro::Task<> DeviceChooser::reconnect_Click() {
  const auto turn = m_bench.turn.begin();
  if (!turn) co_return;
  const QStringList known = remembered();
  for (const QString& place : known) {
    if (!isNetworkAddress(place)) continue;
    const bool reached = co_await connectAt(place, 1);
    if (reached || m_bench.turn.stopped()) break;
  }
  const QString told = lblNotice->Caption();
  co_await ask();
  setNotice(told);
}

QCoro::Task<> DeviceChooser::connectTo_Click() {
  const QString place = address->text().trimmed();
  const QString key = code->text().trimmed();
  if (!isNetworkAddress(place) || std::any_of(key.begin(), key.end(), [](QChar c) { return !c.isDigit(); })) {
    setNotice(
        u"请填写地址和端口，例如 192.168.1.57:5555；配对码只有数字 (Address and port, such as "
        "192.168.1.57:5555; a code has digits only)"_s);
    co_return;
  }
  const auto turn = m_bench.turn.begin();
  if (!turn) co_return;
  if (key.isEmpty()) {
    co_await connectAt(place, 1);
    const QString told = lblNotice->Caption();
    co_await ask();
    setNotice(told);
    co_return;
  }
  const QString reply = co_await m_bench.objDOS.ExecuteCommand(pairLine(Host::current(), place, key));
  if (saysPaired(reply)) {
    setNotice(u"已配对，现在填写连接用的端口 (Paired; now give the port for connecting)"_s);
    code->clear();
  } else if (saysUnknownCommand(reply)) {
    setNotice(
        u"这个 adb 太旧，不能配对，需要 30 或更新的版本 (This adb is too old to pair: version 30 or later)"_s);
  } else {
    setNotice(u"没有配对 (Not paired): "_s + tellingLine(withoutServerNotes(reply)));
  }
}

void DeviceChooser::use_Click() {
  const QString serial = marked();
  if (serial.isEmpty()) return;
  takeFor(serial);
  hide();
}

}  // namespace orvanta
