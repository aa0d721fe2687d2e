#pragma once

#include <QCoroTask>
#include <QObject>

namespace orvanta {

class apkinfo;

/// The row below the console in which the user runs any adb command. What is typed is neither checked nor
/// kept; a command that does not end by itself is ended by the busy strip's Stop.
class AdbRow : public QObject {
  Q_OBJECT

 public:
  explicit AdbRow(apkinfo& form);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Command6_Click();
  QCoro::Task<> Command7_Click();
  void Text1_KeyDown(int KeyCode, Qt::KeyboardModifiers Shift);

  apkinfo& m_form;
};

}  // namespace orvanta
