#pragma once

#include <QLineEdit>
#include <QMenu>
#include <QTimer>
#include <memory>

#include "core/dosoutputs.h"
#include "inventory/columns.h"
#include "inventory/parser.h"
#include "inventory/wheel.h"
#include "ui/busy_strip.h"
#include "ui/controls.h"
#include "ui/flex_grid.h"
#include "ui/form.h"

namespace orvanta {

class Turn;

/// The window "Installed Apps": the grid of the apps on the headset, with its search, its sorting and its
/// menu. The grid's cells are the only store of the inventory. What the menu's entries do is connected by the
/// operations; the row that they are about is the grid's current one, which follows the pointer, so that an
/// operation takes what it needs of it before it first waits.
class Form4 : public Form {
  Q_OBJECT

 public:
  /// A window that is not loaded. Its tools run in `turn`'s time and report to `reports`.
  Form4(CommandReports& reports, Turn& turn);

  std::unique_ptr<DOSOutputs> objDOS;  ///< the form's own runner

  Frame* Frame1;          ///< holds the search box
  QLineEdit* txtSearch;   ///< search text
  QTimer* tmrSearch;      ///< search debounce
  FlexGrid* MSFlexGrid1;  ///< the list
  QMenu* mnuNew;          ///< the menu of a row
  Label* lblShown;        ///< how many apps are shown, and the space that they use
  QLabel* lblNotice;      ///< what could not be read
  BusyStrip* busyStrip;   ///< the running tool, with Stop

  QAction* mnuCopy;
  QAction* mnu_backup_apk;
  QAction* mnu_backup_apk_obb;
  QAction* mnu_uninstall;
  QAction* mnu_startAPK;
  QAction* mnu_NonRootBackup;
  QAction* mnu_Restore;
  QAction* mnu_Permissions;

  bool GridReady = false;   ///< the hover handling may run
  int NormalRowHeight = 0;  ///< of a row that is not hidden, in twips
  int SortColumn = 0;       ///< column of the last sort
  int HoverRow = 2;         ///< the cell that has the highlight
  int HoverCol = 2;

  /// The cell of the current row; of the header its heading.
  QString CellText(InventoryColumn column) const;
  /// The package of the current row, through `CTrim`.
  QString SelectedPackage() const;

  /// Sizes the form by the screen, begins the search's ticks, takes the wheel and heads the columns.
  void prepareLoad();
  /// Fills the grid with one row an app, sorted by the labels, in which order the rows are numbered; fits the
  /// columns to their texts.
  void fill(const Inventory& inventory);
  /// Says `notice` above the grid; an empty one takes the place away.
  void setNotice(const QString& notice);
  void ApplySearchFilter();

 Q_SIGNALS:
  /// The user has closed the window.
  void unloaded();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void createMenu();
  void createShortcuts();
  void headColumns();
  void firstSort();
  void sizeColumns();
  void connectGrid();
  void MSFlexGrid1_Click();
  void MSFlexGrid1_MouseMove(Qt::MouseButtons Button);
  void MSFlexGrid1_MouseDown(Qt::MouseButton Button);
  void MouseWheel(int turn, QPoint place);
  void tmrSearch_Timer();
  void clearSearch();
  void AutoSizeColumns();
  void countShown();
  void Form_Resize();
  void Form_Unload();

  WheelNotches m_notches;
  QString m_LastSearchText;
  bool m_SearchPending = false;
  int m_LastTipRow = 0;
  int m_LastTipCol = 0;
};

}  // namespace orvanta
