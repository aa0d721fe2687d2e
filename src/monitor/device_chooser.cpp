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
#include "text/bilingual.h"
#include "ui/worded.h"

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
      return inFace(u"可用"_s, u"Ready"_s);
    case ListedDevice::State::Offline:
      return inFace(u"离线"_s, u"Offline"_s);
    case ListedDevice::State::Unauthorized:
      return inFace(u"等待“允许”"_s, u"Not allowed yet"_s);
    case ListedDevice::State::NoPermissions:
      return inFace(u"没有 USB 权限"_s, u"No permissions"_s);
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

QLineEdit* edit(const QString& name, const Bilingual& placeholder, QWidget* parent) {
  auto* made = new QLineEdit(parent);
  made->setObjectName(name);
  worded(made, [made, placeholder] {
    made->setAccessibleName(placeholder.shown());
    made->setPlaceholderText(placeholder.shown());
  });
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
  setTitle({u"选择设备"_s, u"Headsets"_s});
  createList();
  createNetwork();
  lblNotice = new Label(u"lblNotice"_s, this);
  busyStrip = new BusyStrip(this);
  again = new Button(u"again"_s, {u"刷新"_s, u"Refresh"_s}, {u"再问一次 adb"_s, u"Ask adb again"_s}, this);
  use = new Button(u"use"_s, {u"使用这台设备"_s, u"Use This One"_s},
                   {u"本程序结束前只对它操作"_s, u"Until this program ends it works on no other"_s}, this);
  done = new Button(u"done"_s, {u"关闭"_s, u"Close"_s}, {}, this);
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
  worded(this, [this] {
    devices->setAccessibleName(inFace(u"设备"_s, u"Devices"_s));
    devices->setHorizontalHeaderLabels(
        {inFace(u"序列号"_s, u"Serial"_s), inFace(u"型号"_s, u"Model"_s), inFace(u"状态"_s, u"State"_s)});
  });
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
  worded(this, [this] {
    const Bilingual steps = diagnose({.answer = u"List of devices attached\n"_s}).remedy;
    lblSteps->setText(
        Bilingual{steps.chinese, steps.english, steps.chinese + u"\n\n"_s + steps.english}.shown());
  });
}

void DeviceChooser::createNetwork() {
  network = new Frame(u"network"_s, {u"无线"_s, u"Over the network"_s}, this);
  overNetwork = new Button(u"overNetwork"_s, {u"所选设备改用无线"_s, u"Use over Wi-Fi"_s},
                           {u"让 USB 连接的头显在 Wi-Fi 上等待连接，直到它重启"_s,
                            u"A headset on the cable then waits on the Wi-Fi, until it is restarted"_s},
                           network);
  reconnect =
      new Button(u"reconnect"_s, {u"连接用过的地址"_s, u"Reconnect"_s},
                 {u"逐个尝试以前连上过的地址"_s, u"Tries the addresses that worked before"_s}, network);
  address = edit(u"address"_s, {u"地址:端口"_s, u"Address:port"_s}, network);
  code = edit(u"code"_s, {u"配对码"_s, u"Pairing code"_s}, network);
  connectTo =
      new Button(u"connectTo"_s, {u"连接 / 配对"_s, u"Connect / Pair"_s},
                 {u"没有配对码时连接，有配对码时配对"_s, u"Connects; with a code it pairs"_s}, network);
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
    setNotice(inFace(u"adb 没有列出设备"_s, u"adb gave no list"_s) + u": "_s + tellingLine(reply));
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
    setNotice(inFace(u"已通过网络连接"_s, u"Connected over the network"_s) + u": "_s + place);
    co_return true;
  }
  setNotice(m_bench.turn.stopped() ? inFace(u"已停止"_s, u"Stopped"_s)
                                   : inFace(u"没有连上"_s, u"Not connected"_s) + u": "_s +
                                         tellingLine(withoutServerNotes(reply)));
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
    setNotice(inFace(u"头显没有连上 Wi-Fi"_s, u"The headset is on no Wi-Fi"_s) +
              (words.contains(u"rror") ? u": "_s + words : QString()));
    co_return;
  }
  const QString reply = co_await m_bench.objDOS.ExecuteCommand(listenLine(host, serial));
  if (!saysListening(reply)) {
    setNotice(inFace(u"头显没有照办"_s, u"The headset did not do it"_s) + u": "_s +
              tellingLine(withoutServerNotes(reply)));
    co_return;
  }
  const bool reached = co_await connectAt(own + u':' + networkPort, triesAfterListening);
  if (!reached) co_return;
  co_await ask();
  setNotice(
      inFace(u"已通过网络连接，可以拔下数据线"_s, u"Connected over the network; you can unplug the cable"_s) +
      u": "_s + own);
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
    setNotice(inFace(u"请填写地址和端口，例如 192.168.1.57:5555；配对码只有数字"_s,
                     u"Address and port, such as 192.168.1.57:5555; a code has digits only"_s));
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
    setNotice(inFace(u"已配对，现在填写连接用的端口"_s, u"Paired; now give the port for connecting"_s));
    code->clear();
  } else if (saysUnknownCommand(reply)) {
    setNotice(inFace(u"这个 adb 太旧，不能配对，需要 30 或更新的版本"_s,
                     u"This adb is too old to pair: version 30 or later"_s));
  } else {
    setNotice(inFace(u"没有配对"_s, u"Not paired"_s) + u": "_s + tellingLine(withoutServerNotes(reply)));
  }
}

void DeviceChooser::use_Click() {
  const QString serial = marked();
  if (serial.isEmpty()) return;
  // An answer of the other headset's that is still to come is overtaken by this turn.
  if (!m_bench.turn.begin()) return;
  takeFor(serial);
  hide();
}

}  // namespace orvanta
