#include "permissions/permission_manager.h"

#include <QKeyEvent>
#include <QScreen>
#include <QScrollBar>
#include <QSignalBlocker>

#include "adb/device_names.h"
#include "adb/installed_build.h"
#include "adb/lines.h"
#include "adb/replies.h"
#include "adb/runtime_permissions.h"
#include "core/busy_tools.h"
#include "core/workbench.h"
#include "inventory/apps_form.h"
#include "text/text.h"
#include "ui/twips.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int widthTwips = 8400;
constexpr int rowsTopTwips = 600;
constexpr int rowPitchTwips = 720;
constexpr int rowHeightTwips = 735;
constexpr int leastHeight = 160;
constexpr int titleBarRoom = 40;
constexpr int margin = 8;
constexpr int lineHeight = 17;

QString noticeOf(const RuntimePermissions& permissions, const QString& reply) {
  if (permissions.RuntimePermCount > Form8::rows) {
    return inFace(u"只显示前 %1 项，共 %2 项"_s, u"Only the first %1 of %2 are shown"_s)
        .arg(QString::number(Form8::rows), QString::number(permissions.RuntimePermCount));
  }
  if (permissions.RuntimePermCount > 0) return {};
  if (knowsPackage(reply)) return inFace(u"该应用没有运行时权限"_s, u"This app has no runtime permissions"_s);
  const QString words = tellingLine(reply);
  return words.isEmpty() ? inFace(u"头显没有回答"_s, u"The headset gave no answer"_s) : words;
}

}  // namespace

Form8::Form8(Workbench& bench, QWidget* above)
    : Form(u"Form8"_s, widthTwips, fullHeight, above),
      lblApp(new Label(u"lblApp"_s, this)),
      lblNotice(new Label(u"lblNotice"_s, this)),
      busyStrip(new BusyStrip(this)),
      m_bench(bench),
      m_view(new QScrollArea(this)),
      m_rows(new QWidget) {
  setTitle(Designed(u"Manage permissions"));
  QFont bold = font();
  bold.setBold(true);
  lblApp->setFont(bold);
  createRows();
  Command1 = new Button(u"Command1"_s, Designed(u"Done"),
                        {u"关闭窗口，更改已经生效"_s, u"Close; changes are already made"_s}, this);
  connect(Command1, &QPushButton::clicked, this, &Form8::Command1_Click);
  connect(this, &Form::hidden, this, &Form8::startAfresh);
  showTools(bench.turn, busyStrip);
  connect(busyStrip, &BusyStrip::inViewChanged, this, [this] {
    lblApp->setVisible(!busyStrip->inView());
    lblNotice->setVisible(!busyStrip->inView());
  });
}

void Form8::createRows() {
  for (int i = 1; i <= rows; ++i) {
    const auto row = static_cast<size_t>(i);
    Frame1[row] = new Frame(u"Frame1_%1"_s.arg(i), {}, m_rows);
    Label1[row] = new Label(u"Label1_%1"_s.arg(i), Frame1[row]);
    Check1[row] = new CheckBox(u"Check1_%1"_s.arg(i), Designed(u"Permission Granted"), {}, Frame1[row]);
    // Not by its click: a screen reader changes a check box without one.
    connect(Check1[row], &QCheckBox::toggled, this, [this, i] { Check1_Click(i); });
  }
  m_rows->installEventFilter(this);
  m_view->setFrameShape(QFrame::NoFrame);
  m_view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_view->setFocusPolicy(Qt::NoFocus);
  m_view->setWidgetResizable(true);
  m_view->setWidget(m_rows);
}

void Form8::Form_Load(const QString& label, const QString& package, const RuntimePermissions& permissions) {
  startAfresh();
  m_package = package;
  m_permissions = permissions;
  lblApp->setCaption(label.isEmpty() || label == package ? package : u"%1  ·  %2"_s.arg(label, package));
  lblApp->setToolTip(lblApp->Caption());
  const int shown = qMin(permissions.RuntimePermCount, rows);
  for (int i = shown + 1; i <= rows; ++i) {
    Frame1[static_cast<size_t>(i)]->hide();
    setHeight(Height() - heightOfRow);
  }
  for (int i = 1; i <= shown; ++i) {
    const auto row = static_cast<size_t>(i);
    const QString& name = permissions.RuntimePermNames[row];
    Label1[row]->setCaption(name);
    Label1[row]->setToolTip(name);
    Frame1[row]->setAccessibleName(name);
    Check1[row]->setAccessibleName(designed(u"Permission Granted") + u": "_s + name);
    const QSignalBlocker isNoClick(Check1[row]);
    Check1[row]->setValue(permissions.RuntimePermStates[row].toInt());
  }
  m_rows->setFixedHeight(shown > 0 ? pixels(rowPitchTwips * (shown - 1) + rowHeightTwips) : 0);
  m_view->verticalScrollBar()->setValue(0);
  fitToScreen();
  (shown > 0 ? static_cast<QWidget*>(Check1[1]) : Command1)->setFocus();
}

void Form8::fitToScreen() {
  // With all rows it is taller than many screens; there the rows scroll.
  setMinimumHeight(qMin(height(), leastHeight));
  if (isMaximized()) return;
  resize(width(), qMin(height(), screen()->availableGeometry().height() - titleBarRoom));
}

void Form8::startAfresh() {
  for (int i = 1; i <= rows; ++i) {
    const auto row = static_cast<size_t>(i);
    Frame1[row]->show();
    Label1[row]->setCaption(QString());
    const QSignalBlocker isNoClick(Check1[row]);
    Check1[row]->setValue(0);
  }
  m_permissions = RuntimePermissions();
  m_package.clear();
  setNotice(QString());
  setHeight(fullHeight);
}

void Form8::setNotice(const QString& notice) {
  lblNotice->setCaption(notice.isEmpty() ? notice : u"⚠ "_s + notice);
  lblNotice->setToolTip(notice);
  arrangeHeading();
}

QCoro::Task<> Form8::Check1_Click(int Index) {
  const auto turn = m_bench.turn.begin();
  if (!turn) {
    putBack(Index);
    co_return;
  }
  objDOS = std::make_unique<DOSOutputs>(m_bench, &m_bench.turn);
  setNotice(QString());
  const QString name = m_permissions.RuntimePermNames[static_cast<size_t>(Index)];
  if (!isChangeable(m_package, name)) {
    putBack(Index);
    const QString told = inFace(u"名称不可用，没有更改"_s, u"No usable name: nothing was changed"_s) +
                         u": "_s + m_package + u' ' + name;
    setNotice(told);
    m_bench.say(told);
    co_return;
  }
  const bool grant = Check1[static_cast<size_t>(Index)]->Value() == 1;
  const Host host = Host::current();
  const QString line = grant ? grantLine(host, m_package, name) : revokeLine(host, m_package, name);
  objDOS->setCommandLine(line);
  const QString reply = co_await objDOS->ExecuteCommand();
  // The check box stays as the user left it; a device that accepts the change prints nothing.
  if (!isVisible()) co_return;
  const QString words = tellingLine(withoutServerNotes(reply));
  if (m_bench.turn.stopped()) {
    setNotice(inFace(u"已停止，结果未知"_s, u"Stopped: the outcome is not known"_s) + u": "_s + name);
  } else if (!words.isEmpty()) {
    setNotice(inFace(u"头显"_s, u"Headset"_s) + u": "_s + words);
  }
}

void Form8::putBack(int Index) {
  CheckBox* box = Check1[static_cast<size_t>(Index)];
  const QSignalBlocker isNoClick(box);
  box->setValue(1 - box->Value());
}

void Form8::Command1_Click() {
  hide();
}

bool Form8::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_rows && event->type() == QEvent::Resize) arrangeRows();
  return Form::eventFilter(watched, event);
}

void Form8::arrangeRows() {
  for (int i = 1; i <= rows; ++i) {
    const auto row = static_cast<size_t>(i);
    Frame1[row]->setGeometry(margin, pixels(rowPitchTwips * (i - 1)), m_rows->width() - 2 * margin,
                             pixels(rowHeightTwips));
    const QRect area = Frame1[row]->contentArea();
    const int box = Check1[row]->sizeHint().width();
    Check1[row]->setGeometry(area.right() + 1 - box, area.y(), box, area.height());
    Label1[row]->setGeometry(area.adjusted(0, 0, -box - margin, 0));
  }
}

void Form8::arrangeHeading() {
  const int top = pixels(rowsTopTwips);
  const QSize button = Command1->sizeHint();
  Command1->setGeometry(width() - margin - button.width(), (top - button.height()) / 2, button.width(),
                        button.height());
  const int beside = Command1->x() - 2 * margin;
  const int lines = lblNotice->Caption().isEmpty() ? 1 : 2;
  lblApp->setGeometry(margin, (top - lines * lineHeight) / 2, beside, lineHeight);
  lblNotice->setGeometry(margin, top / 2, beside, lineHeight);
  busyStrip->setGeometry(margin, Command1->y(), beside, button.height());
}

void Form8::resizeEvent(QResizeEvent* event) {
  Form::resizeEvent(event);
  if (Command1 == nullptr) return;
  arrangeHeading();
  m_view->setGeometry(0, pixels(rowsTopTwips), width(), height() - pixels(rowsTopTwips) - margin);
}

void Form8::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
    Command1_Click();
}

PermissionManager::PermissionManager(Workbench& bench, Form4& apps)
    : m_bench(bench), m_Form4(apps), m_Form8(bench, &apps) {
  connect(apps.mnu_Permissions, &QAction::triggered, this, &PermissionManager::mnu_Permissions_Click);
  // The flag stays set after the window closes: it silences the main window's console, and that window
  // returns only when the list is closed.
  connect(&apps, &Form4::unloaded, this, [this] { m_bench.state.CommandBusy = false; });
}

QCoro::Task<> PermissionManager::mnu_Permissions_Click() {
  // The menu may have been open already when the window appeared.
  if (m_Form8.isVisible()) co_return;
  // While the headset is asked, the pointer may move over the list and change the current row.
  const QString label = m_Form4.CellText(ColAppName).trimmed();
  const QString package = m_Form4.SelectedPackage();
  const bool loaded = co_await load(label, package);
  if (!loaded) co_return;
  m_bench.state.CommandBusy = true;
  co_await m_Form8.showModal();
}

QCoro::Task<bool> PermissionManager::load(QString label, QString package) {
  const auto turn = m_bench.turn.begin();
  if (!turn) co_return false;
  m_bench.state.CommandBusy = false;
  QString reply;
  const bool fit = !package.isEmpty() && isFitPackageName(package);
  if (fit) {
    m_Form4.objDOS->setCommandLine(dumpsysLine(Host::current(), package));
    const QString output = co_await m_Form4.objDOS->ExecuteCommand();
    reply = withoutServerNotes(output);
    // Half a list would pass for a whole one, and after the window is closed nobody needs it.
    if (m_bench.turn.stopped() || !m_Form4.isVisible()) co_return false;
  }
  const RuntimePermissions permissions = readRuntimePermissions(reply);
  m_Form8.Form_Load(label, package, permissions);
  if (fit) {
    m_Form8.setNotice(noticeOf(permissions, reply));
  } else {
    const QString told =
        inFace(u"没有可用的包名，没有询问头显"_s, u"No usable package name: the headset was not asked"_s) +
        u": "_s + package;
    m_Form8.setNotice(told);
    m_bench.say(told);
  }
  co_return true;
}

}  // namespace orvanta
