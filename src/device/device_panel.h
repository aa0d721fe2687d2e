#pragma once

#include <QCoroTask>
#include <QObject>

namespace orvanta {

class apkinfo;

/// The device settings beside the main window's ordinary area, and the headset as a drive. Every press is
/// one-way: nothing is read back, and nothing is remembered but the tool's words in the console.
class DevicePanel : public QObject {
  Q_OBJECT

 public:
  explicit DevicePanel(apkinfo& form);

 private:
  void close();
  void Command11_Click();
  QCoro::Task<> Command12_Click();
  QCoro::Task<> Command13_Click(int Index);

  apkinfo& m_form;
};

}  // namespace orvanta
