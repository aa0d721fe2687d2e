#pragma once

#include "operations/data_copy.h"
#include "operations/listed_app.h"
#include "operations/menu_context.h"
#include "operations/package_backup.h"

namespace orvanta {

/// What the menu of the installed-apps window does to one app: connects each of its entries.
class AppOperations {
 public:
  AppOperations(apkinfo& form, Form4& window) : m_menu(form, window) {}

 private:
  MenuContext m_menu;
  PackageBackup m_packageBackup{m_menu};
  ListedApp m_listedApp{m_menu};
  DataCopy m_dataCopy{m_menu};
};

}  // namespace orvanta
