#include "monitor/connection.h"

#include <QList>
#include <algorithm>

#include "adb/devices.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

using Action = ConnectionAction;
using Sign = Status::Sign;
using State = ConnectionState;

constexpr int patience = 5;  // seconds; a starting server takes three
constexpr qsizetype longestWords = 60;

struct Row {
  State state;
  Sign sign;
  Action action;
  Bilingual sentence;
  Bilingual remedy;
};

const QList<Row>& table() {
  static const Bilingual udev = {
      u"Linux 缺少访问该 USB 设备的规则（udev）。请复制命令，在终端里运行，然后拔下数据线再插上。"_s,
      u"Linux needs a rule (udev) before you may use this USB device. Copy the command, run it in a "
      u"terminal, "
      "then unplug the cable and plug it in again."_s};
  static const QList<Row> rows = {
      {State::ToolMissing,
       Sign::Error,
       Action::ChooseToolFolder,
       {u"找不到 adb"_s, u"adb was not found"_s},
       {u"请选择 adb 所在的文件夹（Android SDK Platform-Tools），它会被链接或复制到本程序旁边。"_s,
        u"Choose the folder that adb is in (Android SDK Platform Tools); it is then linked or copied to the "
        "folder of this program."_s}},
      {State::ToolElsewhere,
       Sign::Error,
       Action::ChooseToolFolder,
       {u"adb 不在本程序旁边，但电脑里有"_s, u"adb is on this computer, but not here"_s},
       {u"点“选择文件夹…”，它会从这里链接或复制到本程序旁边：%1"_s,
        u"“Choose Folder…” links or copies it to the folder of this program, from: %1"_s}},
      {State::ToolNotExecutable,
       Sign::Error,
       Action::ChooseToolFolder,
       {u"adb 无法运行"_s, u"adb is there, but does not start"_s},
       {u"该文件可能不完整、没有执行权限，或属于另一种系统。请选择含有可用 adb 的文件夹。"_s,
        u"The file may be incomplete, not executable, or made for another system. Choose a folder with an "
        u"adb "
        "that runs here."_s}},
      {State::Paused,
       Sign::None,
       Action::None,
       {u"本窗口不在前台，已暂停检查"_s, u"Paused while another window is in front"_s},
       {u"点一下本窗口即可继续查找头显。"_s, u"Click this window to go on looking for the headset."_s}},
      {State::ServerSilent,
       Sign::Error,
       Action::RestartServer,
       {u"adb 已有 %1 秒没有回应"_s, u"adb has not answered for %1 s"_s},
       {u"重启 adb 通常有效。如果仍无回应，请拔下数据线再插上。"_s,
        u"Restarting adb usually helps. If it does not, unplug the cable and plug it in again."_s}},
      {State::Looking, Sign::Working, Action::None, {u"正在查找头显…"_s, u"Looking for the headset…"_s}, {}},
      {State::OtherServer,
       Sign::Error,
       Action::RestartServer,
       {u"另一个程序在用别的 adb 版本"_s, u"Another adb version interferes"_s},
       {u"两个版本会不断中断对方的连接。请关闭其他使用 adb 的程序（手机助手、开发工具等），再重启 adb。"_s,
        u"The two versions keep ending each other's connection. Close other programs that use adb (phone "
        "managers, developer tools), then restart adb."_s}},
      {State::PortTaken,
       Sign::Error,
       Action::RestartServer,
       {u"adb 的端口被别的程序占用"_s, u"Another program holds adb's port"_s},
       {u"请关闭那个程序或重新启动电脑，再重启 adb。adb 的原话：%1"_s,
        u"Close that program or restart the computer, then restart adb. adb says: %1"_s}},
      {State::ServerFailed,
       Sign::Error,
       Action::RestartServer,
       {u"adb 无法列出设备"_s, u"adb could not list the devices"_s},
       {u"请重启 adb。adb 的原话：%1"_s, u"Restart adb. It says: %1"_s}},
      {State::NoAnswer,
       Sign::Error,
       Action::RestartServer,
       {u"adb 没有给出回答"_s, u"adb ended without an answer"_s},
       {u"请重启 adb。"_s, u"Restart adb."_s}},
      {State::ChosenGone,
       Sign::Warning,
       Action::ChooseDevice,
       {u"所选的头显已断开：%1"_s, u"The chosen headset is gone: %1"_s},
       {u"请重新接上它，或选择另一台设备。在此之前不会对其他设备做任何操作。"_s,
        u"Connect it again or choose another device. Until then nothing is done to any other."_s}},
      {State::NotListed,
       Sign::Warning,
       Action::CopyUdevCommand,
       {u"头显已插上，但 adb 看不到它"_s, u"Plugged in, but adb does not see it"_s},
       udev},
      {State::NoDevice,
       Sign::Warning,
       Action::ShowSteps,
       {u"没有找到头显"_s, u"No headset found"_s},
       {u"1. 在手机应用中为头显打开“开发者模式”。\n"
        "2. 用能传输数据的 USB 线连接头显和电脑。\n"
        "3. 戴上头显，对“允许 USB 调试”选择“允许”。"_s,
        u"1. Turn on developer mode for the headset in its phone app.\n"
        "2. Connect headset and computer with a USB cable that carries data.\n"
        "3. Put the headset on and choose “Allow” when it asks about USB debugging."_s}},
      {State::NoPermissions,
       Sign::Warning,
       Action::CopyUdevCommand,
       {u"没有使用该 USB 设备的权限"_s, u"USB access is not allowed yet"_s},
       udev},
      {State::Unauthorized,
       Sign::Warning,
       Action::RestartServer,
       {u"请戴上头显，选择“允许”"_s, u"In the headset, choose “Allow”"_s},
       {u"头显在问是否允许 USB 调试；请同时勾选“始终允许”。看不到提示时，请拔下数据线再插上，或重启 adb。"_s,
        u"The headset asks whether to allow USB debugging; tick “Always allow from this computer”. If you "
        u"see "
        "no question, unplug the cable and plug it in again, or restart adb."_s}},
      {State::Connecting,
       Sign::Working,
       Action::None,
       {u"正在连接头显…"_s, u"Connecting to the headset…"_s},
       {u"只需几秒钟。如果一直如此，请拔下数据线再插上。"_s,
        u"This takes a few seconds. If it stays like this, unplug the cable and plug it in again."_s}},
      {State::Offline,
       Sign::Warning,
       Action::RestartServer,
       {u"头显没有回应（离线）"_s, u"The headset does not respond (offline)"_s},
       {u"请拔下数据线再插上。仍然离线时，请重启 adb，再重启头显。"_s,
        u"Unplug the cable and plug it in again. If it stays offline, restart adb, then the headset."_s}},
      {State::OtherMode,
       Sign::Warning,
       Action::None,
       {u"头显处于 %1 模式"_s, u"The headset is in %1 mode"_s},
       {u"请在头显的菜单中重新启动系统。"_s,
        u"Restart the headset into its normal system, by its own menu."_s}},
      {State::UnknownState,
       Sign::Warning,
       Action::RestartServer,
       {u"头显状态不明：%1"_s, u"Unknown state of the headset: %1"_s},
       {u"请拔下数据线再插上，或重启 adb。"_s, u"Unplug the cable and plug it in again, or restart adb."_s}},
      {State::Several,
       Sign::Warning,
       Action::ChooseDevice,
       {u"接有 %1 台设备，请选择"_s, u"%1 devices: choose one"_s},
       {u"选择在本程序结束前有效。"_s, u"The choice holds until this program ends."_s}},
      {State::ListUsedUp,
       Sign::Good,
       Action::StartAnew,
       {u"已连接；重启可再看应用列表"_s, u"Connected; restart for the list"_s},
       {u"已连接：%1。应用列表在每次启动后只能打开一次。"_s,
        u"Connected: %1. The list of apps opens once each time the program is started."_s}},
      {State::Ready, Sign::Good, Action::ChooseDevice, {u"已连接：%1"_s, u"Connected: %1"_s}, {}},
  };
  return rows;
}

Bilingual captionOf(Action action) {
  switch (action) {
    case Action::ChooseToolFolder:
      return {u"选择文件夹…"_s, u"Choose Folder…"_s};
    case Action::RestartServer:
      return {u"重启 adb"_s, u"Restart adb"_s};
    case Action::ShowSteps:
      return {u"查看步骤"_s, u"Show Steps"_s};
    case Action::CopyUdevCommand:
      return {u"复制命令"_s, u"Copy Command"_s};
    case Action::ChooseDevice:
      return {u"选择设备…"_s, u"Devices…"_s};
    case Action::StartAnew:
      return {u"重新启动"_s, u"Restart"_s};
    case Action::None:
      break;
  }
  return {};
}

/// The table's entry for `state`, with `value` inserted in its texts.
Connection found(State state, const QString& value = {}) {
  const auto row = std::find_if(table().begin(), table().end(),
                                [state](const Row& candidate) { return candidate.state == state; });
  return {state,
          row->sign,
          row->sentence.with(value),
          row->remedy.with(value),
          row->action,
          captionOf(row->action)};
}

/// The same where the list of devices tells it: adb works on `serial`, or on none.
Connection listed(State state, const QString& value = {}, const QString& serial = {}) {
  Connection connection = found(state, value);
  connection.serial = serial;
  return connection;
}

Connection foundFor(const ListedDevice& device, const ConnectionFacts& facts) {
  using Listed = ListedDevice::State;
  switch (device.state) {
    case Listed::Device:
      return listed(facts.listUsedUp ? State::ListUsedUp : State::Ready, device.serial, device.serial);
    case Listed::Offline:
      return listed(State::Offline);
    case Listed::Unauthorized:
      return listed(State::Unauthorized);
    case Listed::Authorizing:
    case Listed::Connecting:
      return listed(State::Connecting);
    case Listed::NoPermissions:
      return listed(State::NoPermissions);
    case Listed::Recovery:
    case Listed::Sideload:
    case Listed::Rescue:
    case Listed::Bootloader:
      return listed(State::OtherMode, device.words);
    case Listed::Host:
    case Listed::Detached:
    case Listed::Unknown:
      break;
  }
  return listed(State::UnknownState, device.words.left(longestWords));
}

/// Why `list` has no device.
Connection foundWithout(const DeviceList& list, const ConnectionFacts& facts) {
  const QString words = list.complaints.join(u' ');
  const auto says = [&words](const QString& part) { return words.contains(part, Qt::CaseInsensitive); };
  if (says(u"doesn't match this client"_s)) return found(State::OtherServer);
  if (says(u"protocol fault"_s) || says(u"failed to check server version"_s) ||
      says(u"address already in use"_s))
    return found(State::PortTaken, words);
  if (!list.headed) return found(words.isEmpty() ? State::NoAnswer : State::ServerFailed, words);
  if (!facts.chosenSerial.isEmpty()) return listed(State::ChosenGone, facts.chosenSerial);
  return listed(facts.pluggedIn.value_or(false) ? State::NotListed : State::NoDevice);
}

}  // namespace

Connection diagnose(const ConnectionFacts& facts) {
  if (facts.tool == ConnectionFacts::Tool::Missing && !facts.toolPlaces.isEmpty())
    return found(State::ToolElsewhere, facts.toolPlaces.join(u", "_s));
  if (facts.tool == ConnectionFacts::Tool::Missing) return found(State::ToolMissing);
  if (facts.tool == ConnectionFacts::Tool::NotExecutable) return found(State::ToolNotExecutable);
  if (!facts.inFront) return found(State::Paused);
  if (facts.silentSeconds >= patience)
    return found(State::ServerSilent, QString::number(facts.silentSeconds));
  if (!facts.answer) return found(State::Looking);

  const DeviceList list = readDevices(*facts.answer);
  if (list.devices.isEmpty()) return foundWithout(list, facts);
  if (!facts.chosenSerial.isEmpty()) {
    for (const ListedDevice& device : list.devices) {
      if (device.serial == facts.chosenSerial) return foundFor(device, facts);
    }
    return listed(State::ChosenGone, facts.chosenSerial);
  }
  // adb ignores devices that it may not open when it chooses one.
  QList<ListedDevice> reachable = list.devices;
  reachable.removeIf(
      [](const ListedDevice& device) { return device.state == ListedDevice::State::NoPermissions; });
  if (reachable.size() > 1) {
    Connection several = listed(State::Several, QString::number(reachable.size()));
    several.unchosen = reachable.size();
    return several;
  }
  return foundFor(reachable.isEmpty() ? list.devices.first() : reachable.first(), facts);
}

ConnectionFacts::Tool toolAfterStartFailure(quint32 error) {
  // ENOENT, and the same for a file and for a folder on Windows.
  constexpr quint32 noFile = 2;
  constexpr quint32 noFolder = 3;
  return error == noFile || error == noFolder ? ConnectionFacts::Tool::Missing
                                              : ConnectionFacts::Tool::NotExecutable;
}

QString udevCommand() {
  return u"echo 'SUBSYSTEM==\"usb\", ENV{ID_USB_INTERFACES}==\"*:ff4201:*\", TAG+=\"uaccess\"' | "
         "sudo tee /etc/udev/rules.d/51-usb-debugging.rules && "
         "sudo udevadm control --reload && sudo udevadm trigger --subsystem-match=usb"_s;
}

}  // namespace orvanta
