#pragma once

#include "operations/data_copy.h"
#include "operations/listed_app.h"
#include "operations/menu_context.h"
#include "operations/package_backup.h"
#include "operations/whole_backups.h"

namespace orvanta {

/// What the menu of the installed-apps window does to one app, and the buttons above the list: connects each
/// of them.
class AppOperations {
 public:
  AppOperations(Workbench& bench, Form4& window) : m_menu(bench, window) {}

 private:
  MenuContext m_menu;
  PackageBackup m_packageBackup{m_menu};
  ListedApp m_listedApp{m_menu};
  DataCopy m_dataCopy{m_menu};
  WholeBackups m_wholeBackups{m_menu};
};

}  // namespace orvanta
