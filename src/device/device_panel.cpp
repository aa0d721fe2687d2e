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
  if (m_form.Width() == closedWidth) {
    m_form.setWidth(openWidth);
  } else {
    close();
  }
}

void DevicePanel::close() {
  // From a hidden button the focus would go on to the first one, which installs: one more press of the key.
  m_form.keepFocusOutOf({m_form.Frame11, m_form.Frame12, m_form.Frame13, m_form.Frame14, m_form.Frame15,
                         m_form.Frame16, m_form.Frame17},
                        m_form.Command11);
  m_form.setWidth(closedWidth);
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
  close();
}

}  // namespace orvanta
