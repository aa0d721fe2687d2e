#pragma once

#include <QCoroTask>
#include <QObject>

#include "operations/menu_context.h"

namespace orvanta {

/// The entries that act on the selected row and write no file on the desktop: "Launch App", "卸载 APK" and
/// "Copy".
class ListedApp : public QObject {
  Q_OBJECT

 public:
  explicit ListedApp(MenuContext& menu);

  /// Starts the app on the headset; an app without an activity for a launcher by its immersive one.
  QCoro::Task<> mnu_startAPK_Click();
  /// Removes the app. Its row stays in the grid, so once this was answered, a second press on the same row
  /// runs nothing.
  QCoro::Task<> mnu_uninstall_Click();
  /// Puts the current cell's text on the clipboard without its line end; for the menu's cell the package
  /// name.
  void mnuCopy_Click();

 private:
  MenuContext& m_menu;
  QString m_LastUninstalled;  // the raw text of the cell
};

}  // namespace orvanta
