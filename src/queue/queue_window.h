#pragma once

#include <QProgressBar>
#include <QTableWidget>

#include "queue/install_queue.h"
#include "ui/busy_strip.h"
#include "ui/controls.h"
#include "ui/form.h"

namespace orvanta {

/// The window "Queue": the packages that are to be installed, a row each, and how far each is.
class QueueWindow : public Form {
  Q_OBJECT

 public:
  QueueWindow(InstallQueue& queue, Desktop& desktop, QWidget* owner);

  QTableWidget* table;
  Label* lblSummary;      ///< how many went well
  QProgressBar* overall;  ///< over all packages, while it runs
  BusyStrip* busyStrip;   ///< the running tool, with Stop
  Button* cmdAdd;         ///< a folder's packages
  Button* cmdSkip;        ///< leaves the marked rows out, or takes them in again
  Button* cmdRetry;       ///< what failed
  Button* cmdCopy;        ///< how it went, as text
  Button* cmdStart;
  Button* cmdClose;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void createTable();
  void arrange();
  void showItems();
  void showRow(int row);
  void showProgress();
  QCoro::Task<> cmdAdd_Click();
  void cmdSkip_Click();
  void cmdRetry_Click();
  void cmdCopy_Click();

  InstallQueue& m_queue;
  Desktop& m_desktop;
  int m_percent = -1;
};

}  // namespace orvanta
