#include "core/control_hints.h"

#include <QWidget>
#include <algorithm>

namespace orvanta {

namespace {

const ControlHint hints[] = {
    {u"Frame1", Designed(u"应用名称"), u"安装包里的应用名称", u"What the app in the package is called"},
    {u"Frame2", Designed(u"应用包名"), u"头显用来区分应用的名称",
     u"The name by which the headset tells apps apart"},
    {u"Frame3", Designed(u"版本"), u"安装包里的版本名称", u"The version's name in the package"},
    {u"Frame4", Designed(u"Build APK"), u"安装包的构建号；数字大的较新",
     u"The package's build number; the larger one is newer"},
    {u"Frame6", Designed(u"设备已经安装的版本"), u"头显上已装的构建号：绿色较旧，红色相同或较新",
     u"The build on the headset: green is older than the package, red is the same or newer"},
    {u"Picture1", {}, u"应用的图标", u"The app's icon"},
    {u"Frame5", Designed(u"文件名"), u"打开的安装包文件", u"The package file that is open"},
    {u"Frame7", Designed(u"磁盘空间"), u"头显存储的大小", u"The size of the headset's storage"},
    {u"Frame8", Designed(u"已使用"), u"头显上已用的空间", u"What is used of it"},
    {u"Frame9", Designed(u"可用空间"), u"头显上可用的空间", u"What is free"},
    {u"Frame10", Designed(u"已用%"), u"已用空间占的百分比", u"The used part in percent"},
    {u"Check1", Designed(u"授予权限"), u"安装时授予应用要求的所有权限",
     u"Grants all that the app asks for when it is installed"},
    {u"Check2", Designed(u"退出关闭ADB"), u"关闭窗口时结束 adb 的后台服务",
     u"Ends adb's background server when the window closes"},
    {u"Command1", Designed(u"安装"), u"把安装包和旁边的 OBB 文件放到头显上",
     u"Puts the package and the OBB files beside it on the headset"},
    {u"Command2", Designed(u"权限"), u"列出安装包声明的权限",
     u"Lists the permissions that the package declares"},
    {u"Command4", Designed(u"卸载"), u"从头显删除这个应用和它的所有数据，不再询问",
     u"Removes this app and all its data from the headset without asking"},
    {u"Command5", Designed(u"卸载并保留数据"), u"删除应用，数据留在头显上；会先询问",
     u"Removes the app and leaves its data on the headset; asks first"},
    {u"Command8", Designed(u"Help"), u"六步上手，以及每个控件的名称",
     u"First steps, and the name of every control"},
    {u"Command9", Designed(u"已安装的游戏程序(备份/已用空间)"),
     u"列出头显上的应用：大小、备份、还原、权限、卸载",
     u"Lists the headset's apps: sizes, backup, restore, permissions, removal"},
    {u"Command11", Designed(u"功能命令合集"), u"打开或关闭头显设置的面板",
     u"Opens and closes the panel of headset settings"},
    {u"Command12", Designed(u"打开Quest磁盘驱动器"), u"让头显在电脑上显示为磁盘",
     u"Makes the headset appear as a drive on this computer"},
    {u"Command6", Designed(u"ADB 命令行"), u"打开或关闭输入 adb 命令的一行",
     u"Opens and closes the row for any adb command"},
    {u"saveReport",
     {},
     u"把版本、状态和控制台存成文字，用来报告问题",
     u"Saves versions, state and console as a text, to report a problem"},
    {u"faceSwitch", {}, u"所有文字的语言", u"The language of all texts"},
    {u"txtOutputs", {}, u"工具的原话", u"What the tools say"},
    {u"Text1", {}, u"adb 后面的命令，例如 shell ls /sdcard", u"What follows adb, such as shell ls /sdcard"},
    {u"Command7", Designed(u"Run"), u"运行这一行", u"Runs that line"},
    {u"Frame11", Designed(u"Guardian"), u"暂停或恢复安全边界：On 是暂停",
     u"Pauses the guardian (On) or lets it go on (Off)"},
    {u"Frame12", Designed(u"Set Refresh Rate"), u"屏幕每秒刷新的次数",
     u"How often a second the display is drawn"},
    {u"Frame14", Designed(u"Full Rate Capture"), u"以全帧率录制视频", u"Records video at the full rate"},
    {u"Frame15", Designed(u"Video Capture Size"), u"录制视频的尺寸", u"The size of recorded video"},
    {u"Frame13", Designed(u"Set Fixed Foveated Rendering level"), u"画面边缘的简化程度：0 不简化，4 最多",
     u"How much the picture's edge is simplified: 0 not at all, 4 most"},
    {u"Frame16", Designed(u"Texture Size"), u"渲染画面的尺寸：大则清晰，也更费力",
     u"The size of the drawn picture: larger is sharper and harder work"},
    {u"Frame17", Designed(u"Reboot Quest"), u"重新启动头显", u"Restarts the headset"},
};

}  // namespace

std::span<const ControlHint> controlHints() {
  return hints;
}

const ControlHint* hintFor(const QWidget* control) {
  for (const QWidget* widget = control; widget != nullptr && !widget->isWindow();
       widget = widget->parentWidget()) {
    const QString name = widget->objectName();
    const auto* const hint = std::ranges::find_if(
        hints, [&name](const ControlHint& one) { return name == QStringView(one.name); });
    if (hint != std::end(hints)) return hint;
  }
  return nullptr;
}

}  // namespace orvanta
