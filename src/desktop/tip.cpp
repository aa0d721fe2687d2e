#include "desktop/tip.h"

#include <QHBoxLayout>
#include <QKeyEvent>

#include "text/text.h"
#include "ui/worded.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {
constexpr int widthTwips = 6900;
constexpr int heightTwips = 3000;
constexpr int margin = 16;
}  // namespace

Form7::Form7(SettingsStore& settings, QWidget* owner)
    : Form(u"Form7"_s, widthTwips, heightTwips, owner),
      Label1(new QLabel(this)),
      Check1(new CheckBox(u"Check1"_s, Designed(u"不再显示"), {}, this)),
      Command1(new Button(u"Command1"_s, Designed(u"OK"), {}, this)),
      m_settings(settings) {
  setTitle(Designed(u"Tip"));
  Label1->setObjectName(u"Label1"_s);
  Label1->setTextFormat(Qt::PlainText);
  Label1->setWordWrap(true);
  Label1->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  Command1->setDefault(true);

  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(margin, margin, margin, margin);
  rows->addWidget(Label1, 1);
  auto* row = new QHBoxLayout;
  row->addWidget(Check1);
  row->addStretch();
  row->addWidget(Command1);
  rows->addLayout(row);
  connect(Command1, &QPushButton::clicked, this, &Form7::Command1_Click);
  Form_Load();
}

void Form7::Form_Load() {
  worded(this, [this] {
    Label1->setText(designed(
        u"Orvanta自身已集成到“资源管理器”菜单中, 要安装APK，只需在APK上右键单击并选择Orvanta\r\n\r\n"
        "仅当您要使用其他功能（例如：ADB命令行，已安装的应用程序管理，将Quest挂载为驱动器或运行Quest "
        "ADB命令）时，才可以直接启动Orvanta"));
  });
  Command1->setFocus();
}

void Form7::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) close();
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) Command1->click();
}

void Form7::Command1_Click() {
  if (Check1->Value() == 1) m_settings.write(u"tooltip"_s, u"off"_s);
  hide();
}

}  // namespace orvanta
