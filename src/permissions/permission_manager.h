#pragma once

#include <QCoroTask>
#include <QScrollArea>
#include <array>
#include <memory>

#include "adb/runtime_permissions.h"
#include "core/dosoutputs.h"
#include "ui/busy_strip.h"
#include "ui/controls.h"
#include "ui/form.h"

namespace orvanta {

class Workbench;
class Form4;

/// The window "Manage permissions": one row for each runtime permission of an app. Changing a check box
/// grants or revokes at once; the boxes show what the app had when the window opened, plus the user's
/// changes.
class Form8 : public Form {
  Q_OBJECT

 public:
  static constexpr int rows = 14;           ///< further permissions cannot be seen or changed
  static constexpr int fullHeight = 11325;  ///< height in twips with all rows
  static constexpr int heightOfRow = 721;   ///< height in twips of one row

  /// Its tools run in the turn of `bench` and report to it; `above` is its owner window.
  Form8(Workbench& bench, QWidget* above);

  std::unique_ptr<DOSOutputs> objDOS;  ///< a new one for each click

  Label* lblApp;               ///< whose permissions they are
  Label* lblNotice;            ///< what could not be shown or done
  BusyStrip* busyStrip;        ///< the running tool, with Stop
  Button* Command1 = nullptr;  ///< Done

  // From index 1 on, as the rows are numbered.
  std::array<Frame*, rows + 1> Frame1{};     ///< one per row
  std::array<Label*, rows + 1> Label1{};     ///< the permission's name
  std::array<CheckBox*, rows + 1> Check1{};  ///< whether it is granted

  /// Fills the rows with `permissions` of `package`, which the heading shows with the app's `label`. It
  /// changes nothing on the device.
  void Form_Load(const QString& label, const QString& package, const RuntimePermissions& permissions);
  /// Shows `notice` in the heading; an empty text removes it.
  void setNotice(const QString& notice);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void createRows();
  void arrangeRows();
  void arrangeHeading();
  void startAfresh();
  void fitToScreen();
  QCoro::Task<> Check1_Click(int Index);
  void putBack(int Index);
  void Command1_Click();

  Workbench& m_bench;
  QScrollArea* m_view;
  QWidget* m_rows;
  QString m_package;
  RuntimePermissions m_permissions;
};

/// The entry "Manage Permissions" of the installed apps' menu: asks the headset what the app under the
/// pointer has been granted, and opens the window for it.
class PermissionManager : public QObject {
  Q_OBJECT

 public:
  /// Must be destroyed before `apps`, which owns its window.
  PermissionManager(Workbench& bench, Form4& apps);

  /// Returns when the window has been closed.
  QCoro::Task<> mnu_Permissions_Click();

  Form8& window() { return m_Form8; }

 private:
  QCoro::Task<bool> load(QString label, QString package);

  Workbench& m_bench;
  Form4& m_Form4;
  Form8 m_Form8;
};

}  // namespace orvanta
