#pragma once

#include <QCoroTask>
#include <QObject>

namespace orvanta {

class Workbench;
class apkinfo;

/// The row below the console in which the user runs any adb command. The text is neither checked nor kept;
/// the busy strip's Stop ends a command that does not end by itself. Several pasted lines become one, so that
/// the row shows exactly what is run.
class AdbRow : public QObject {
  Q_OBJECT

 public:
  AdbRow(Workbench& bench, apkinfo& form);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Command6_Click();
  QCoro::Task<> Command7_Click();
  void keepOneLine(const QString& text);
  void Text1_KeyDown(int KeyCode, Qt::KeyboardModifiers Shift);

  Workbench& m_bench;
  apkinfo& m_form;
};

}  // namespace orvanta
