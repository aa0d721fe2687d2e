#include "device/device_panel.h"

#include "adb/lines.h"
#include "core/main_window.h"
#include "device/presses.h"
#include "ui/twips.h"
#include "ui/worded.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr QSize frameTwips{6105, 735};
constexpr QSize buttonTwips{615, 375};
constexpr int gap = 6;

/// The frame of a row, made for its first button.
Frame* frameFor(const PanelFrame& row, QWidget* room) {
  const QString name = u"Frame%1"_s.arg(row.number);
  auto* frame = room->findChild<Frame*>(name);
  if (frame == nullptr) {
    frame = new Frame(name, row.caption, room);
    frame->setGeometry(0, pixels(row.topTwips), pixels(frameTwips.width()), pixels(frameTwips.height()));
  }
  return frame;
}

}  // namespace

DevicePanel::DevicePanel(Workbench& bench, apkinfo& form) : m_bench(bench), m_form(form) {
  connect(form.Command11, &QPushButton::clicked, this, &DevicePanel::Command11_Click);
  connect(form.Command12, &QPushButton::clicked, this, &DevicePanel::Command12_Click);
  for (const PanelButton& row : panelButtons()) {
    connect(makeButton(row), &QPushButton::clicked, this, [this, &row] { Command13_Click(row.press); });
  }
}

Button* DevicePanel::makeButton(const PanelButton& row) {
  Frame* frame = frameFor(*row.frame, m_form.panelRoom);
  const auto before = static_cast<int>(frame->findChildren<Button*>().size());
  auto* button = new Button(u"Command13_%1"_s.arg(row.Index), row.caption, {}, frame);
  worded(button, [button, &row] {
    button->setAccessibleName(row.frame->caption.shown() + u": "_s + row.caption.shown());
  });
  // The longest captions need some air in a button of this width.
  QFont narrow = m_form.font();
  narrow.setPixelSize(11);
  button->setFont(narrow);
  const QSize size(pixels(buttonTwips.width()), pixels(buttonTwips.height()));
  const QPoint first(frame->contentArea().left(), frame->height() - size.height() - 5);
  button->setGeometry(QRect(first + QPoint(before * (size.width() + gap), 0), size));
  return button;
}

void DevicePanel::Command11_Click() {
  if (m_form.Width() == closedWidth) {
    m_form.setWidth(openWidth);
  } else {
    close();
  }
}

void DevicePanel::close() {
  m_form.keepFocusOutOf({m_form.panelRoom}, m_form.Command11);
  m_form.setWidth(closedWidth);
}

QCoro::Task<> DevicePanel::Command12_Click() {
  const auto turn = m_bench.turn.begin();
  if (!turn) co_return;
  const QString line = mtpLine(Host::current());
  co_await m_bench.objDOS.ExecuteCommand(line);
  m_bench.desktop.Beep();
}

QCoro::Task<> DevicePanel::Command13_Click(PanelPress press) {
  const auto turn = m_bench.turn.begin();
  if (!turn) co_return;
  const QStringList lines = pressLines(Host::current(), press);
  for (const QString& line : lines) co_await m_bench.objDOS.ExecuteCommand(line);
  m_bench.desktop.Beep();
  close();
}

}  // namespace orvanta
