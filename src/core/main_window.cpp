#include "core/main_window.h"

#include <QApplication>
#include <QCloseEvent>

#include "adb/lines.h"
#include "core/busy_tools.h"
#include "core/control_hints.h"
#include "core/enabled_controls.h"
#include "core/face_question.h"
#include "core/paths.h"
#include "platform/awaited.h"
#include "text/text.h"
#include "ui/hint_watch.h"
#include "ui/twips.h"
#include "ui/worded.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr std::chrono::seconds longestClosingStep{3};
constexpr std::chrono::seconds longestEnd{5};

const QString siteAddress = u"https://orvanta.example/"_s;

constexpr FormColor green = 65280;
constexpr FormColor red = 255;
constexpr FormColor white = 16777215;

QString onOff(const CheckBox* box) {
  return box->Value() == 1 ? u"on"_s : u"off"_s;
}

}  // namespace

apkinfo::apkinfo(MainWindowNeeds needs)
    : Form(u"apkinfo"_s, closedWidth, closedHeight), m_needs(std::move(needs)), m_bench(m_needs.bench) {
  setWindowTitle(u"Orvanta %1 - %2"_s.arg(QStringLiteral(ORVANTA_VERSION), siteAddress));
  createControls(this);
  setFocusRefuge(txtOutputs);
  Command1->setFocus();
  for (size_t i = 0; i < Picture2.size(); ++i) {
    Picture2[i]->setOwnPicture(QIcon(u":/banner/banner_%1.gif"_s.arg(i, 2, 10, QLatin1Char('0'))));
  }
  m_NormalBackColor = Label6->BackColor();
  m_NormalForeColor = Label6->ForeColor();
  txtOutputs->follow(m_bench.console);
  connect(Check1, &QCheckBox::toggled, this, &apkinfo::Check1_Click);
  connect(Check2, &QCheckBox::toggled, this, &apkinfo::Check2_Click);
  connect(faceSwitch, &FaceSwitch::chosen, this, [this](Face face) { keepFace(m_needs.settings, face); });
  connect(Timer1, &QTimer::timeout, this, &apkinfo::Timer1_Timer);
  connect(Timer2, &QTimer::timeout, this, &apkinfo::Timer2_Timer);
  connect(banner, &PictureBox::MouseMove, this, &apkinfo::Picture2_MouseMove);
  connect(busyStrip, &BusyStrip::inViewChanged, this,
          [this] { statusLine->setVisible(!busyStrip->inView()); });
  connect(&m_bench.status, &StatusBoard::changed, this, &apkinfo::showStatus);
  connect(statusLine, &StatusLine::wholeTextWanted, this, [this](const QString& text) {
    MessageBox box;
    box.text = text;
    box.icon = BoxIcon::Information;
    m_bench.desktop.showBox(box);
  });
  connect(&m_bench.status, &StatusBoard::verdictGiven, this, &apkinfo::callUser);
  showTools(m_bench.turn, busyStrip);
  showPercentage(m_bench.turn, this);
  const State& state = m_bench.state;
  connect(&state, &State::packageChanged, this, &apkinfo::showPackage);
  connect(&state, &State::storageChanged, this, &apkinfo::showStorage);
  connect(&state, &State::installedBuildChanged, this, &apkinfo::showInstalledBuild);
  connect(&state, &State::availabilityChanged, this, &apkinfo::showAvailability);
  // As after a report without an answer, so that the watcher fills them, with or without a package.
  showStorage();
  worded(this, [this] {
    showPackage();
    showInstalledBuild();
    showStatus();
  });
}

apkinfo::~apkinfo() = default;

void apkinfo::prepareStart() {
  setWidth(closedWidth);
  m_bench.state.WatcherHold = true;
  m_bench.state.CommandBusy = false;
  m_AnimationFrame = 0;
  for (PictureBox* frame : Picture2) frame->setVisible(false);
  Timer2->start();
  Timer3->start();
  restoreSettings();
  watchForHints();
}

void apkinfo::watchForHints() {
  auto* watch = new HintWatch(this, [this](const QWidget* control) {
    const ControlHint* hint = control != nullptr ? hintFor(control) : nullptr;
    statusLine->showHint(hint != nullptr ? hint->sentence().shown() : QString());
  });
  for (QWidget* control : findChildren<QWidget*>()) {
    const ControlHint* hint = control->window() == this ? hintFor(control) : nullptr;
    if (hint == nullptr) continue;
    watch->add(control);
    worded(control, [control, hint] { control->setAccessibleDescription(hint->sentence().shown()); });
  }
}

void apkinfo::restoreSettings() {
  SettingsStore& settings = m_needs.settings;
  Check1->setValue(settings.read(u"Grant"_s, u"off"_s) == u"off"_s ? 0 : 1);
  if (settings.read(u"Kill"_s, QString()).isEmpty()) settings.write(u"Kill"_s, u"on"_s);
  Check2->setValue(settings.read(u"Kill"_s, u"off"_s) == u"off"_s ? 0 : 1);
}

QCoro::Task<bool> apkinfo::Form_Load(QString commandText, StartupSteps& steps) {
  // Before anything else looks at the disk: the package itself may need to be set right.
  const QStringList setRight = steps.setRight(commandText);
  prepareStart();
  if (commandText.isEmpty()) {
    co_await startWithoutPath(steps);
  } else {
    m_bench.state.package.ApkPath = commandText;
    co_await startWithPath(steps);
  }
  // Not earlier: a start with a package clears the console.
  for (const QString& line : setRight) m_bench.say(line);
  co_return !m_ended && !m_ending;
}

QCoro::Task<> apkinfo::startWithoutPath(StartupSteps& steps) {
  m_bench.state.noteNoPackage();
  const SettingsStore& settings = m_needs.settings;
  if (settings.read(u"tooltip"_s, u"off"_s) == u"on"_s) co_await steps.showTip();
  if (settings.read(u"Explentry"_s, u"off"_s) == u"off"_s) co_await steps.runFirstRunDialog();
  if (!m_ended) m_bench.state.WatcherHold = false;
}

QCoro::Task<> apkinfo::startWithPath(StartupSteps& steps) {
  const auto turn = m_bench.turn.begin();
  State& state = m_bench.state;
  m_bench.beginStart();
  state.package.ApkFileName = BaseName(state.package.ApkPath);
  co_await steps.readBadging();
  co_await steps.StorageReport();
  co_await steps.showIcon();
  state.notePackage();
  m_bench.console.setText(QString());
  co_await steps.showInstalledBuild();
  Timer1->start();
  m_bench.endStart();
  state.WatcherHold = false;
}

void apkinfo::showStatus() {
  statusLine->tell(m_bench.status.first(), m_bench.status.second());
}

void apkinfo::callUser(const Status& verdict) {
  if (QApplication::activeWindow() != nullptr) return;
  QApplication::alert(this);
  const LoadedPackage& package = m_bench.state.package;
  const QString& label = package.ManifestFields[FieldLabel];
  m_bench.desktop.notify(label.isEmpty() ? package.ApkFileName : label, verdict.sentence.shown());
}

void apkinfo::showPackage() {
  const LoadedPackage& package = m_bench.state.package;
  if (package.NoApkLoaded == 1) {
    Label5->setForeColor(red);
    QFont prompt = Label5->font();
    prompt.setBold(true);
    prompt.setPixelSize(12);
    Label5->setFont(prompt);
    Label5->setCaption(designed(u"要安装APK，请右键单击APK文件，然后选择Orvanta"));
    // Beside the console's text, which stays empty.
    const Bilingual greeting = {
        u"1. 连接头显并戴上，允许 USB 调试。\n2. 右键单击 APK 文件，选择 Orvanta。\n3. 点击“安装”。"_s,
        u"1. Connect the headset, put it on, and allow USB debugging.\n2. Right-click an APK file and choose Orvanta.\n3. Press Install."_s};
    txtOutputs->setPlaceholderText(
        inFace(greeting.chinese, greeting.english, greeting.chinese + u'\n' + greeting.english));
    return;
  }
  const std::pair<Label*, QString> shown[] = {{Label5, package.ApkFileName},
                                              {Label1, package.ManifestFields[FieldLabel]},
                                              {Label2, package.package()},
                                              {Label3, package.ManifestFields[FieldVersionName]},
                                              {Label4, package.versionCode()}};
  for (const auto& [label, text] : shown) {
    label->setCaption(text);
    label->setToolTip(text);
  }
}

void apkinfo::showStorage() {
  const StorageShown& storage = m_bench.state.headset().storage;
  Label7->setCaption(storage.size + u" Gb"_s);
  Label8->setCaption(storage.used + u" Gb"_s);
  if (!storage.free.isEmpty()) Label9->setCaption(storage.free + u" Gb"_s);
  Label10->setCaption(storage.percent + u" %"_s);
  // The captions leave out the unit and the decimals that the headset gave.
  const auto tip = [&storage](StorageFigure StorageRoom::*figure) {
    return storage.room ? readableSize(((*storage.room).*figure).bytes) : QString();
  };
  Label7->setToolTip(tip(&StorageRoom::size));
  Label8->setToolTip(tip(&StorageRoom::used));
  Label9->setToolTip(tip(&StorageRoom::available));
  Label10->setToolTip(storage.room ? tip(&StorageRoom::used) + u" / "_s + tip(&StorageRoom::size)
                                   : QString());
}

void apkinfo::showInstalledBuild() {
  const InstalledBuild& build = m_bench.state.headset().build;
  if (!build.verdict) return;
  if (build.verdict == BuildVerdict::NotInstalled) {
    Label6->setCaption(designed(u"未安装"));
    Label6->setBackColor(m_NormalBackColor);
    Label6->setForeColor(m_NormalForeColor);
    return;
  }
  const QString word = wordOf(*build.verdict);
  Label6->setCaption(u" %1 (%2)"_s.arg(build.number, word));
  Label6->setToolTip(u' ' + build.number);
  Label6->setBackColor(build.verdict == BuildVerdict::Older ? green : red);
  if (build.lightText) Label6->setForeColor(white);
}

void apkinfo::showAvailability() {
  const std::pair<Control, QWidget*> controls[] = {
      {Control::Fields, Frame1},       {Control::Fields, Frame2},      {Control::Fields, Frame3},
      {Control::Fields, Frame4},       {Control::Fields, Frame5},      {Control::Fields, Frame6},
      {Control::Check1, Check1},       {Control::Command1, Command1},  {Control::Command2, Command2},
      {Control::Command3, Command3},   {Control::Command4, Command4},  {Control::Command5, Command5},
      {Control::Command6, Command6},   {Control::Command9, Command9},  {Control::Command10, Command10},
      {Control::Command11, Command11}, {Control::Command12, Command12}};
  for (const auto& [control, widget] : controls)
    widget->setEnabled(orvanta::isEnabled(control, m_bench.state));
}

void apkinfo::Check1_Click() {
  m_bench.state.Grant = Check1->Value() == 1;
  m_needs.settings.write(u"Grant"_s, onOff(Check1));
}

void apkinfo::Check2_Click() {
  m_needs.settings.write(u"Kill"_s, onOff(Check2));
}

void apkinfo::Timer1_Timer() {
  txtOutputs->moveToEnd();
}

void apkinfo::Timer2_Timer() {
  const auto frames = static_cast<qint16>(Picture2.size());
  Picture2[static_cast<size_t>(m_AnimationFrame)]->setVisible(false);
  m_AnimationFrame = static_cast<qint16>((m_AnimationFrame + 1) % frames);
  Picture2[static_cast<size_t>(m_AnimationFrame)]->setVisible(true);
}

void apkinfo::Picture2_MouseMove(Qt::MouseButtons Button) {
  if (Button == Qt::LeftButton) m_bench.desktop.open(QUrl(siteAddress));
}

void apkinfo::resizeEvent(QResizeEvent* event) {
  Form::resizeEvent(event);
  if (Timer3 != nullptr) arrange(*this);
}

void apkinfo::closeEvent(QCloseEvent* event) {
  event->ignore();
  beginClosing();
}

void apkinfo::beginClosing() {
  if (std::exchange(m_closing, true)) return;
  // A poll that comes in between would start the adb server again.
  Timer3->stop();
  if (m_bench.turn.taken())
    m_bench.say(inFace(u"将在当前操作结束后关闭"_s, u"Closing when the current operation has ended"_s));
  Form_QueryUnload();
}

QCoro::Task<> apkinfo::Form_QueryUnload() {
  Turn& turn = m_bench.turn;
  while (turn.taken()) {
    const bool lives = co_await Emitted(&turn, &Turn::ended);
    if (!lives) co_return;
  }
  const auto last = turn.begin();
  if (Check2->Value() == 1) co_await m_bench.objDOS.ExecuteCommand(killServerLine(Host::current()));
  QuitProgram();
}

void apkinfo::keepFocusOutOf(std::initializer_list<QWidget*> going, QWidget* opener) {
  for (const QWidget* widget : going) {
    if (focusWidget() != widget && !widget->isAncestorOf(focusWidget())) continue;
    (opener->isEnabled() ? opener : txtOutputs)->setFocus();
    return;
  }
}

void apkinfo::endInOrder() {
  if (std::exchange(m_ending, true)) return;
  m_bench.desktop.stopAsking();
  m_bench.turn.requestStop();
  beginClosing();
  // Neither an adb that does not end its server nor anything else may hold up the end of a session.
  QTimer::singleShot(longestClosingStep, this, [this] { m_bench.turn.requestStop(); });
  QTimer::singleShot(longestEnd, this, &apkinfo::QuitProgram);
}

void apkinfo::QuitProgram() {
  if (std::exchange(m_ended, true)) return;
  m_bench.state.WatcherHold = true;
  m_needs.endProcess();
}

}  // namespace orvanta
