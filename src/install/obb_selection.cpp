#include "install/obb_selection.h"

#include <QKeyEvent>
#include <QTimer>

#include "text/text.h"
#include "ui/twips.h"
#include "ui/worded.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int widthTwips = 9000;
constexpr int heightTwips = 825 + 420;
constexpr int rowTopTwips = 720;
constexpr int rowPitchTwips = 480;
constexpr int margin = 8;
constexpr int captionAir = 12;
constexpr FormColor orange = 33023;
const QColor installFace(38, 198, 86);
const QColor skipFace(255, 74, 74);

}  // namespace

Form3::Form3(const QString& apkFileName, ExpansionFileList& module, QWidget* owner)
    : Form(u"Form3"_s, widthTwips, heightTwips, owner), m_module(module), m_Timer1(new QTimer(this)) {
  setTitle(Designed(u"Found OBB Files (Click to Skip)"));
  Frame1_18 = new Frame(u"Frame1_18"_s, Designed(u"File name"), this);
  Label1_18 = new Label(u"Label1_18"_s, Frame1_18);
  cmdCancel =
      new Button(u"cmdCancel"_s, {u"取消"_s, u"Cancel"_s},
                 {u"不安装，什么也不发送到设备"_s, u"Install nothing, send nothing to the headset"_s}, this);
  // Otherwise Enter on it would press the button beside it, which installs.
  cmdCancel->setAutoDefault(true);
  Command1 = new Button(u"Command1"_s, Designed(u"将所选的OBB文件安装到设备"),
                        Designed(u"在设备上安装选定的OBB文件"), this);
  Command1->setDefault(true);
  Label2 = new Label(u"Label2"_s, this);
  worded(this, [this] { Label2->setCaption(designed(u"点击跳过")); });
  for (int k = 0; k < static_cast<int>(Check1.size()); ++k) {
    const auto row = static_cast<size_t>(k);
    Frame1[row] = new Frame(u"Frame1_%1"_s.arg(k), {}, this);
    Label1[row] = new Label(u"Label1_%1"_s.arg(k), Frame1[row]);
    Check1[row] = new ToggleButton(u"Check1_%1"_s.arg(k), k < 16 ? Designed(u"Install") : Designed(u"安装"),
                                   installFace, skipFace, this);
    connect(Check1[row], &QAbstractButton::toggled, this, [this, k] { Check1_Click(k); });
  }
  m_Timer1->setObjectName(u"Timer1"_s);
  m_Timer1->setInterval(500);
  connect(cmdCancel, &QPushButton::clicked, this, &Form3::cancel);
  connect(Command1, &QPushButton::clicked, this, &Form3::Command1_Click);
  connect(m_Timer1, &QTimer::timeout, this, &Form3::Timer1_Timer);
  Form_Load(apkFileName);
}

void Form3::Form_Load(const QString& apkFileName) {
  for (size_t k = 0; k < Check1.size(); ++k) {
    Frame1[k]->hide();
    Check1[k]->hide();
  }
  Label1_18->setCaption(apkFileName);
  Label1_18->setToolTip(apkFileName);
  for (int i = 1; i <= qMin(m_module.ObbFileCount, shownRows); ++i) {
    const auto row = static_cast<size_t>(i - 1);
    const QString& name = m_module.ObbFileNames[static_cast<size_t>(i)];
    Frame1[row]->show();
    Frame1[row]->setAccessibleName(name);
    Check1[row]->show();
    worded(Check1[row], [check = Check1[row], name] {
      check->setAccessibleName(inFace(u"跳过 "_s, u"Skip "_s, u"Skip "_s) + name);
    });
    Label1[row]->setCaption(name);
    Label1[row]->setToolTip(name);
    setHeight(Height() + rowPitchTwips);
  }
}

void Form3::resizeEvent(QResizeEvent* event) {
  Form::resizeEvent(event);
  const QSize toggle = Check1[0]->sizeHint();
  const int toggles = width() - margin - toggle.width();
  const int confirm = Command1->sizeHint().width() + captionAir;
  const int headingHeight = pixels(rowTopTwips) - margin;
  Command1->setGeometry(toggles - margin - confirm, margin, confirm, headingHeight - margin - 2);
  const int cancel = cmdCancel->sizeHint().width() + captionAir;
  cmdCancel->setGeometry(Command1->x() - margin - cancel, Command1->y(), cancel, Command1->height());
  Frame1_18->setGeometry(margin, 2, cmdCancel->x() - 2 * margin, headingHeight);
  Label1_18->setGeometry(Frame1_18->contentArea());
  Label2->setGeometry(toggles + 6, Command1->y(), toggle.width() - 6, Command1->height());
  for (int k = 0; k < static_cast<int>(Check1.size()); ++k) {
    const auto row = static_cast<size_t>(k);
    const int top = pixels(rowTopTwips + rowPitchTwips * k);
    Frame1[row]->setGeometry(margin, top, toggles - 2 * margin, toggle.height());
    Label1[row]->setGeometry(Frame1[row]->contentArea());
    Check1[row]->setGeometry(QRect(QPoint(toggles, top), toggle));
  }
}

void Form3::showEvent(QShowEvent* event) {
  Form::showEvent(event);
  Command1->setFocus();
  m_Timer1->start();
}

void Form3::hideEvent(QHideEvent* event) {
  m_Timer1->stop();
  Form::hideEvent(event);
}

void Form3::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) cancel();
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) Command1->click();
}

void Form3::Check1_Click(int Index) {
  ToggleButton* row = Check1[static_cast<size_t>(Index)];
  row->setCaption(row->Value() == 0 ? Designed(u"安装") : Designed(u"Skip"));
}

void Form3::Command1_Click() {
  m_module.ObbSelectionConfirmed = true;
  hide();
}

void Form3::cancel() {
  Q_EMIT cancelled();
  hide();
}

void Form3::Timer1_Timer() {
  Command1->setBackColor(Command1->BackColor() == systemButtonFace ? orange : systemButtonFace);
}

}  // namespace orvanta
