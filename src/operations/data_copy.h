#pragma once

#include <QCoroTask>
#include <QObject>

#include "operations/menu_context.h"

namespace orvanta {

/// The entries "Backup Non-Root App Data" and "Restore Non-Root App Data": copy an app's folder on the shared
/// storage to the desktop and back. The copy is named after the package.
class DataCopy : public QObject {
  Q_OBJECT

 public:
  explicit DataCopy(MenuContext& menu);

  QCoro::Task<> mnu_NonRootBackup_Click();
  QCoro::Task<> mnu_Restore_Click();

 private:
  QCoro::Task<QString> askDestination(QString package);
  QCoro::Task<bool> isTakenForData(QString copy);
  QCoro::Task<> push(QString package, QString copy);

  MenuContext& m_menu;
};

}  // namespace orvanta
