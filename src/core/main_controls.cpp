#include "core/main_controls.h"

#include <QKeySequence>
#include <utility>
#include <vector>

#include "text/text.h"
#include "ui/theme.h"
#include "ui/twips.h"
#include "ui/worded.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int margin = 8;
constexpr int gap = 6;
constexpr int fieldHeight = 42;
constexpr int commandHeight = 30;
constexpr int lineHeight = 38;
constexpr int saveWidth = 30;
constexpr int switchWidth = 34;
constexpr int bannerTwipsTop = 840;
constexpr int bannerTwipsLeft = 7680;
constexpr int iconTwipsLeft = 6840;
constexpr int iconTwipsSize = 735;
constexpr int bannerPixels = 46;
constexpr int rowTwipsTop = 6840;
constexpr int rowTwipsWidth = 7455;
constexpr int rowHeight = 26;
constexpr int panelTwipsLeft = 8640;

struct Field {
  Frame* MainControls::*frame;
  Label* MainControls::*label;
  int number;
  Designed caption;
};

const Field fields[] = {
    {&MainControls::Frame1, &MainControls::Label1, 1, Designed(u"应用名称")},
    {&MainControls::Frame2, &MainControls::Label2, 2, Designed(u"应用包名")},
    {&MainControls::Frame3, &MainControls::Label3, 3, Designed(u"版本")},
    {&MainControls::Frame4, &MainControls::Label4, 4, Designed(u"Build APK")},
    {&MainControls::Frame5, &MainControls::Label5, 5, Designed(u"文件名")},
    {&MainControls::Frame6, &MainControls::Label6, 6, Designed(u"设备已经安装的版本")},
    {&MainControls::Frame7, &MainControls::Label7, 7, Designed(u"磁盘空间")},
    {&MainControls::Frame8, &MainControls::Label8, 8, Designed(u"已使用")},
    {&MainControls::Frame9, &MainControls::Label9, 9, Designed(u"可用空间")},
    {&MainControls::Frame10, &MainControls::Label10, 10, Designed(u"已用%")},
};

/// Lays `controls` side by side from `left` to `right`, sharing the spare room by their weights.
void layRow(const std::vector<std::pair<QWidget*, int>>& controls, int left, int right, int top, int height) {
  int wanted = gap * (static_cast<int>(controls.size()) - 1);
  int weights = 0;
  for (const auto& [control, weight] : controls) {
    wanted += control->sizeHint().width();
    weights += weight;
  }
  int spare = right - left - wanted;
  int x = left;
  for (const auto& [control, weight] : controls) {
    const int share = weights > 0 ? spare * weight / weights : 0;
    spare -= share;
    weights -= weight;
    const int width = control->sizeHint().width() + share;
    control->setGeometry(x, top, width, height);
    x += width + gap;
  }
}

/// Lays frames side by side in the proportion of their weights.
void layFrames(const std::vector<std::pair<QWidget*, int>>& frames, int left, int right, int top,
               int height) {
  int weights = 0;
  for (const auto& [frame, weight] : frames) weights += weight;
  int spare = right - left - gap * (static_cast<int>(frames.size()) - 1);
  int x = left;
  for (const auto& [frame, weight] : frames) {
    const int width = spare * weight / weights;
    frame->setGeometry(x, top, width, height);
    x += width + gap;
    spare -= width;
    weights -= weight;
  }
}

QTimer* makeTimer(Form* form, const QString& name, int milliseconds) {
  auto* timer = new QTimer(form);
  timer->setObjectName(name);
  timer->setInterval(milliseconds);
  return timer;
}

}  // namespace

void MainControls::createControls(Form* form) {
  createFields(form);
  createCommands(form);
  panelRoom = new QWidget(form);
  Timer1 = makeTimer(form, u"Timer1"_s, 100);
  Timer1->setSingleShot(true);
  Timer2 = makeTimer(form, u"Timer2"_s, 80);
  Timer3 = makeTimer(form, u"Timer3"_s, 2000);
}

void MainControls::createFields(Form* form) {
  for (const Field& field : fields) {
    auto* frame = new Frame(u"Frame%1"_s.arg(field.number), field.caption, form);
    this->*field.frame = frame;
    this->*field.label = new Label(u"Label%1"_s.arg(field.number), frame);
  }
  Picture1 = new PictureBox(u"Picture1"_s, form);
  worded(form, [this] { Picture1->setAccessibleName(inFace(u"图标"_s, u"Icon"_s)); });
  banner = new PictureBox(u"banner"_s, form);
  banner->setAccessibleName(u"https://orvanta.example/"_s);
  for (int i = 0; i < static_cast<int>(Picture2.size()); ++i) {
    Picture2[i] = new PictureBox(u"Picture2_%1"_s.arg(i), banner);
    Picture2[i]->setAttribute(Qt::WA_TransparentForMouseEvents);
  }
}

void MainControls::createCommands(Form* form) {
  const auto button = [form](const char16_t* name, Designed caption, Designed toolTip,
                             const char* shortcut = nullptr) {
    auto* made = new Button(QString::fromUtf16(name), caption, toolTip, form);
    // The captions have no letters to underline, so the keys are set separately. Nothing that destroys data
    // has a key: one slip would be enough.
    if (shortcut != nullptr) made->setShortcut(QKeySequence(QString::fromLatin1(shortcut)));
    return made;
  };
  Command1 = button(u"Command1", Designed(u"安装"), Designed(u"Install APK"), "Alt+I");
  Check1 = new CheckBox(u"Check1"_s, Designed(u"授予权限"), Designed(u"授予列表中的所有权限"), form);
  Command2 = button(u"Command2", Designed(u"权限"), Designed(u"在所选应用程序上显示权限"), "Alt+P");
  Command4 = button(u"Command4", Designed(u"卸载"), Designed(u"卸载选定的应用程序"));
  Command5 =
      button(u"Command5", Designed(u"卸载并保留数据"), Designed(u"卸载选定的应用程序并保留设备上的所有数据"));
  Command8 = button(u"Command8", Designed(u"Help"), Designed(u"Try me"), "F1");
  Check2 = new CheckBox(u"Check2"_s, Designed(u"退出关闭ADB"),
                        Designed(u"在退出时关闭ADB服务（下次启动速度较慢，但不会锁定最后安装的目录）"), form);
  Check2->setValue(1);
  Command9 =
      button(u"Command9", Designed(u"已安装的游戏程序(备份/已用空间)"), Designed(u"Halden网"), "Alt+G");
  Command11 = button(u"Command11", Designed(u"功能命令合集"), Designed(u"ADB 命令行"), "Alt+D");
  Command12 = button(u"Command12", Designed(u"打开Quest磁盘驱动器"), Designed(u"Mount MTP-Device"), "Alt+M");
  Command6 = button(u"Command6", Designed(u"ADB 命令行"), Designed(u"Run ADB Command on Device"), "Alt+A");
  Command10 = button(u"Command10", Designed(u"未安装的应用"), Designed(u"卸载选定的游戏程序"));
  Command3 = button(u"Command3", Designed(u"撤消资源管理器菜单集成"), {});
  // They are out of view, where neither the tab key nor a screen reader must go.
  for (Button* outOfView : {Command10, Command3}) outOfView->hide();
  QFont strong = Command1->font();
  strong.setBold(true);
  Command1->setFont(strong);
  Command1->setFirstAction();

  statusLine = new StatusLine(form);
  busyStrip = new BusyStrip(form);
  saveReport = new SaveButton(u"saveReport"_s, Text(u"保存报告"_s, u"Save a report"_s), form);
  saveReport->setShortcut(QKeySequence(u"Ctrl+S"_s));
  faceSwitch = new FaceSwitch(form);
  txtOutputs = new Console(u"txtOutputs"_s, form);
  Text1 = new QLineEdit(form);
  Text1->setObjectName(u"Text1"_s);
  Text1->setAccessibleName(u"adb"_s);
  Text1->setTextMargins(3, 0, 3, 0);
  Text1->setPlaceholderText(u"shell ls /sdcard"_s);
  Command7 = new Button(u"Command7"_s, Designed(u"Run"), {}, form);
}

void MainControls::arrange(const Form& form) {
  const QSize room = form.userRoom();
  const int right = pixels(closedWidth) - margin + room.width();
  const int pictures = pixels(iconTwipsLeft) + room.width();
  const int top = pixels(bannerTwipsTop);
  const int iconSize = pixels(iconTwipsSize);

  layFrames({{Frame1, 5}, {Frame2, 7}}, margin, right, margin, fieldHeight);
  layFrames({{Frame3, 10}, {Frame4, 9}, {Frame6, 14}}, margin, pictures - gap, top, iconSize);
  Picture1->setGeometry(pictures, top, iconSize, iconSize);
  banner->setGeometry(pixels(bannerTwipsLeft) + room.width(), top, bannerPixels, bannerPixels);
  for (PictureBox* frame : Picture2) frame->setGeometry(0, 0, bannerPixels, bannerPixels);
  int y = top + iconSize + gap;
  layFrames({{Frame5, 1}}, margin, right, y, fieldHeight);
  y += fieldHeight + gap;
  const int checks = qMax(Check1->sizeHint().width(), Check2->sizeHint().width());
  layFrames({{Frame7, 1}, {Frame8, 1}, {Frame9, 1}, {Frame10, 1}}, margin, right - checks - 2 * gap, y,
            fieldHeight);
  Check1->setGeometry(right - checks, y, checks, fieldHeight / 2);
  Check2->setGeometry(right - checks, y + fieldHeight / 2, checks, fieldHeight / 2);
  for (const Field& field : fields) (this->*field.label)->setGeometry((this->*field.frame)->contentArea());

  y += fieldHeight + gap;
  layRow({{Command1, 3}, {Command2, 1}, {Command4, 1}, {Command5, 1}, {Command8, 1}}, margin, right, y,
         commandHeight);
  y += commandHeight + gap;
  layRow({{Command9, 1}, {Command11, 1}, {Command12, 1}, {Command6, 1}}, margin, right, y, commandHeight);
  y += commandHeight + gap;
  for (QWidget* line : {static_cast<QWidget*>(statusLine), static_cast<QWidget*>(busyStrip)})
    line->setGeometry(margin, y, right - margin - saveWidth - switchWidth - gap, lineHeight);
  saveReport->setGeometry(right - saveWidth - switchWidth, y, saveWidth, lineHeight);
  faceSwitch->setGeometry(right - switchWidth + 2, y, switchWidth - 2, lineHeight);
  y += lineHeight + gap;
  const int rowTop = pixels(rowTwipsTop) + room.height();
  txtOutputs->setGeometry(margin, y, right - margin, rowTop - margin - y);

  const bool rowInView = form.Height() == openHeight;
  Text1->setVisible(rowInView);
  Command7->setVisible(rowInView);
  const int runWidth = pixels(735);
  Text1->setGeometry(margin, rowTop, pixels(rowTwipsWidth) + room.width(), rowHeight);
  Command7->setGeometry(right - runWidth, rowTop, runWidth, rowHeight);
  Command10->move(margin, pixels(9960) + room.height());
  Command3->move(margin, pixels(10560) + room.height());
  panelRoom->setVisible(form.Width() > panelTwipsLeft);
  panelRoom->setGeometry(pixels(panelTwipsLeft) + room.width(), 0, pixels(openWidth - panelTwipsLeft),
                         form.height());
}

}  // namespace orvanta
