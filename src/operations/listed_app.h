#pragma once

#include <QCoroTask>
#include <QObject>

#include "operations/menu_context.h"

namespace orvanta {

/// The entries that act on the selected row with no file on the desktop: "Launch App", "卸载 APK" and "Copy".
class ListedApp : public QObject {
  Q_OBJECT

 public:
  explicit ListedApp(MenuContext& menu);

  /// Starts the app on the headset; an app without an activity for a launcher by its immersive one.
  QCoro::Task<> mnu_startAPK_Click();
  /// Removes the app. The grid keeps its row, so a second press on the same row runs nothing.
  QCoro::Task<> mnu_uninstall_Click();
  /// Puts the current cell's text on the clipboard, less the line end that it keeps.
  void mnuCopy_Click();

 private:
  MenuContext& m_menu;
  QString m_LastUninstalled;  // the raw text of the cell
};

}  // namespace orvanta
