#include "device/device_panel.h"

#include "core/main_window.h"
#include "device/presses.h"

namespace orvanta {

DevicePanel::DevicePanel(apkinfo& form) : m_form(form) {
  connect(form.Command11, &QPushButton::clicked, this, &DevicePanel::Command11_Click);
  connect(form.Command12, &QPushButton::clicked, this, &DevicePanel::Command12_Click);
  for (int Index = 0; Index < pressCount; ++Index) {
    connect(form.Command13[static_cast<size_t>(Index)], &QPushButton::clicked, this,
            [this, Index] { Command13_Click(Index); });
  }
}

void DevicePanel::Command11_Click() {
  m_form.setWidth(m_form.Width() == closedWidth ? openWidth : closedWidth);
}

QCoro::Task<> DevicePanel::Command12_Click() {
  const auto turn = m_form.turn().begin();
  if (!turn) co_return;
  const QString line = mtpLine(Host::current());
  m_form.ToolOutput = co_await m_form.objDOS->ExecuteCommand(line);
  m_form.desktop().Beep();
}

QCoro::Task<> DevicePanel::Command13_Click(int Index) {
  const auto turn = m_form.turn().begin();
  if (!turn) co_return;
  const QStringList lines = pressLines(Host::current(), Index);
  for (const QString& line : lines) m_form.ToolOutput = co_await m_form.objDOS->ExecuteCommand(line);
  m_form.desktop().Beep();
  m_form.setWidth(closedWidth);
}

}  // namespace orvanta
