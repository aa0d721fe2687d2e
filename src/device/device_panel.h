#pragma once

#include <QCoroTask>
#include <QObject>

#include "device/panel_table.h"

namespace orvanta {

class Workbench;
class apkinfo;
class Button;

/// The device settings beside the main window's ordinary area, made from the table in panel_table.h, and the
/// headset as a drive. Presses only send: nothing is read back or remembered except the tool's output in the
/// console.
class DevicePanel : public QObject {
  Q_OBJECT

 public:
  DevicePanel(Workbench& bench, apkinfo& form);

 private:
  Button* makeButton(const PanelButton& row);
  void close();
  void Command11_Click();
  QCoro::Task<> Command12_Click();
  QCoro::Task<> Command13_Click(PanelPress press);

  Workbench& m_bench;
  apkinfo& m_form;
};

}  // namespace orvanta
