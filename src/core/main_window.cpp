#include "core/main_window.h"

#include <QCloseEvent>

#include "core/tools.h"
#include "ui/awaited.h"
#include "ui/twips.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

const QString siteAddress = u"https://orvanta.example/"_s;

QString onOff(const CheckBox* box) {
  return box->Value() == 1 ? u"on"_s : u"off"_s;
}

}  // namespace

apkinfo::apkinfo(MainWindowNeeds needs)
    : Form(u"apkinfo"_s, closedWidth, closedHeight), m_needs(std::move(needs)) {
  setWindowTitle(u"Orvanta - "_s + siteAddress);
  createControls(this);
  for (size_t i = 0; i < Picture2.size(); ++i) {
    Picture2[i]->setOwnPicture(QIcon(u":/banner/banner_%1.gif"_s.arg(i, 2, 10, QLatin1Char('0'))));
  }
  connect(txtOutputs, &Console::Change, txtOutputs, &Console::moveToEnd);
  connect(Check1, &QCheckBox::toggled, this, &apkinfo::Check1_Click);
  connect(Check2, &QCheckBox::toggled, this, &apkinfo::Check2_Click);
  connect(banner, &PictureBox::MouseMove, this, &apkinfo::Picture2_MouseMove);
  connect(busyStrip, &BusyStrip::stopRequested, &m_turn, &Turn::requestStop);
  connect(busyStrip, &BusyStrip::inViewChanged, this, [this] { arrange(*this); });
  connect(&m_turn, &Turn::toolStarted, busyStrip, &BusyStrip::begin);
  connect(&m_turn, &Turn::toolEnded, busyStrip, &BusyStrip::pause);
  connect(&m_turn, &Turn::ended, busyStrip, &BusyStrip::end);
  connect(&m_turn, &Turn::stopRequested, this, &apkinfo::sayStopped);
}

apkinfo::~apkinfo() = default;

void apkinfo::prepareStart() {
  setWidth(closedWidth);
  WatcherHold = true;
  NormalBackColor = QString::number(Label6->BackColor());
  NormalForeColor = QString::number(Label6->ForeColor());
  objDOS = std::make_unique<DOSOutputs>(*this, &m_turn);
  connect(objDOS.get(), &DOSOutputs::ReceiveOutputs, this, &apkinfo::objDOS_ReceiveOutputs);
  module().CommandBusy = false;
  AnimationFrame = 0;
  for (PictureBox* frame : Picture2) frame->setVisible(false);
  Timer2->start();
  Timer3->start();
  restoreSettings();
}

void apkinfo::restoreSettings() {
  Check1->setValue(settings().read(u"Grant"_s, u"off"_s) == u"off"_s ? 0 : 1);
  if (settings().read(u"Kill"_s, QString()).isEmpty()) settings().write(u"Kill"_s, u"on"_s);
  Check2->setValue(settings().read(u"Kill"_s, u"off"_s) == u"off"_s ? 0 : 1);
}

QCoro::Task<bool> apkinfo::Form_Load(QString commandText, StartupSteps& steps) {
  prepareStart();
  if (commandText.isEmpty()) {
    const bool stays = co_await startWithoutPath(steps);
    co_return stays;
  }
  ApkPath = commandText;
  co_await startWithPath(steps);
  co_return !m_ended;
}

QCoro::Task<bool> apkinfo::startWithoutPath(StartupSteps& steps) {
  NoApkLoaded = 1;
  Label5->setForeColor(255);
  QFont prompt = Label5->font();
  prompt.setBold(true);
  prompt.setPixelSize(12);
  Label5->setFont(prompt);
  Label5->setCaption(u"要安装APK，请右键单击APK文件，然后选择Orvanta"_s);
  for (QWidget* control : std::initializer_list<QWidget*>{Frame1, Frame2, Frame3, Frame4, Frame5, Command4,
                                                          Frame6, Check1, Command2, Command1, Command5}) {
    control->setEnabled(false);
  }
  if (settings().read(u"tooltip"_s, u"off"_s) == u"on"_s) co_await steps.showTip();
  if (settings().read(u"Explentry"_s, u"off"_s) == u"off"_s) co_await steps.runFirstRunDialog();
  if (m_ended) co_return false;
  WatcherHold = false;
  co_return true;
}

QCoro::Task<> apkinfo::startWithPath(StartupSteps& steps) {
  const auto turn = m_turn.begin();
  ApkFileName = BaseName(ApkPath);
  Label5->setCaption(ApkFileName);
  Label5->setToolTip(ApkFileName);
  co_await steps.readBadging();
  co_await steps.StorageReport();
  co_await steps.showIcon();
  const std::pair<Label*, int> shown[] = {{Label1, 4}, {Label2, 1}, {Label3, 3}, {Label4, 2}};
  for (const auto& [label, field] : shown) label->setCaption(ManifestFields[static_cast<size_t>(field)]);
  for (const auto& [label, field] : shown) label->setToolTip(ManifestFields[static_cast<size_t>(field)]);
  txtOutputs->setText(QString());
  co_await steps.showInstalledBuild();
  // The verdict has replaced what the console said of the stop.
  if (m_turn.stopped()) sayStopped();
  WatcherHold = false;
}

QCoro::Task<QString> apkinfo::runQuietly(DOSOutputs& runner, std::optional<QString> line) {
  // A runner without our console has nothing to keep out of it; the flag is the workflows' own.
  const bool ours = &runner == objDOS.get();
  if (ours) module().CommandBusy = true;
  if (line) runner.setCommandLine(*line);
  const QString text = co_await runner.ExecuteCommand();
  if (ours) module().CommandBusy = false;
  co_return text;
}

void apkinfo::objDOS_ReceiveOutputs(const QString& CommandOutputs) {
  if (!module().CommandBusy) txtOutputs->append(CommandOutputs);
}

void apkinfo::say(const QString& message) {
  txtOutputs->appendLine(message);
  txtOutputs->moveToEnd();
}

void apkinfo::sayStopped() {
  say(u"已停止 (Stopped)"_s);
}

void apkinfo::commandError(const QString& commandLine) {
  txtOutputs->append(u"\r\nCommand Error: \r\n"_s + commandLine + u"\r\n\r\n"_s);
  txtOutputs->moveToEnd();
}

QCoro::Task<> apkinfo::criticalMessage(QString text) {
  MessageBox box;
  box.text = text;
  box.icon = BoxIcon::Critical;
  co_await desktop().showBox(box);
}

void apkinfo::Check1_Click() {
  settings().write(u"Grant"_s, onOff(Check1));
}

void apkinfo::Check2_Click() {
  settings().write(u"Kill"_s, onOff(Check2));
}

void apkinfo::Picture2_MouseMove(Qt::MouseButtons Button) {
  if (Button == Qt::LeftButton) desktop().open(QUrl(siteAddress));
}

void apkinfo::resizeEvent(QResizeEvent* event) {
  Form::resizeEvent(event);
  if (Timer3 != nullptr) arrange(*this);
}

void apkinfo::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (m_closing) return;
  m_closing = true;
  // A poll that comes in between would start the adb server again.
  Timer3->stop();
  Q_EMIT closing();
  if (m_turn.taken()) say(u"将在当前操作结束后关闭 (Closing when the current operation has ended)"_s);
  Form_QueryUnload();
}

QCoro::Task<> apkinfo::Form_QueryUnload() {
  while (m_turn.taken()) co_await Emitted(&m_turn, &Turn::ended);
  const auto turn = m_turn.begin();
  if (Check2->Value() == 1) co_await objDOS->ExecuteCommand(AdbPrefix(Host::current()) + u" kill-server"_s);
  QuitProgram();
}

void apkinfo::keepFocusOutOf(std::initializer_list<QWidget*> going, QWidget* refuge) {
  for (const QWidget* widget : going) {
    if (focusWidget() != widget && !widget->isAncestorOf(focusWidget())) continue;
    (refuge->isEnabled() ? refuge : txtOutputs)->setFocus();
    return;
  }
}

void apkinfo::QuitProgram() {
  m_ended = true;
  WatcherHold = true;
  m_needs.endProcess();
}

}  // namespace orvanta
