#pragma once

#include <QHash>
#include <QIcon>
#include <QLineEdit>
#include <QMenu>
#include <QSet>
#include <QTime>
#include <QTimer>
#include <memory>

#include "adb/app_state.h"
#include "core/dosoutputs.h"
#include "inventory/apps_model.h"
#include "inventory/column_widths.h"
#include "inventory/wheel.h"
#include "ui/busy_strip.h"
#include "ui/controls.h"
#include "ui/flex_grid.h"
#include "ui/form.h"

namespace orvanta {

class Turn;

/// An app of the list, as an operation on several takes it.
struct ChosenApp {
  QString package;
  QString label;
  qint64 bytes = 0;  ///< as the list has them, rounded

  /// What to call it.
  const QString& name() const { return label.isEmpty() ? package : label; }
};

/// An app of the list, with its build as the script printed it.
struct ListedBuild {
  QString package;
  QString build;
};

/// The window "Installed Apps": the grid of the apps on the headset, with its search, its sorting and its
/// menu. Its records are the only store of the inventory. The operations connect the menu's entries. These
/// act on the grid's current row, which follows the pointer, so an operation reads what it needs before its
/// first wait.
class Form4 : public Form {
  Q_OBJECT

 public:
  /// A window that is not loaded. Its tools run in `turn` and report to `reports`.
  Form4(CommandReports& reports, Turn& turn);

  std::unique_ptr<DOSOutputs> objDOS;  ///< the form's own runner

  Frame* Frame1;          ///< holds the search box
  QLineEdit* txtSearch;   ///< search text
  QTimer* tmrSearch;      ///< search debounce
  AppsModel* apps;        ///< the records of the list
  FlexGrid* MSFlexGrid1;  ///< the list
  QMenu* mnuNew;          ///< the menu of a row
  Label* lblShown;        ///< how many apps are shown, and the space that they use
  QLabel* lblNotice;      ///< what could not be read, or what came of the last operation
  BusyStrip* busyStrip;   ///< the running tool, with Stop
  Label* lblRead;         ///< when the list was read, and from which headset

  // These act on what is checked, else on the current row.
  Button* cmdBackup;     ///< saves apps with all that belongs to them
  Button* cmdRestore;    ///< puts backups back
  Button* cmdCheck;      ///< checks backups
  Button* cmdUninstall;  ///< removes apps
  Button* cmdRefresh;    ///< reads the list anew

  QAction* mnuCopy;
  QAction* mnu_backup_apk;
  QAction* mnu_backup_apk_obb;
  QAction* mnu_uninstall;
  QAction* mnu_startAPK;
  QAction* mnu_NonRootBackup;
  QAction* mnu_Restore;
  QAction* mnu_Permissions;

  bool GridReady = false;  ///< the hover handling may run
  int SortColumn = 0;      ///< column of the last sort
  int HoverRow = 2;        ///< the cell that has the highlight
  int HoverCol = 2;

  /// The cell of the current row; of the header its heading.
  QString CellText(InventoryColumn column) const;
  /// The package of the current row, through `CTrim`.
  QString SelectedPackage() const;
  /// The text of the current cell, trimmed. For the menu's cell, the package.
  QString SelectedText() const;

  /// The checked apps, those too that a search hides; else the one of the current row.
  QList<ChosenApp> chosenApps() const;
  bool anyChecked() const { return !m_checked.isEmpty(); }
  /// Takes the checks away.
  void clearChecks();

  /// Sizes the form to the screen, starts the search timer and takes over the wheel.
  void prepareLoad();
  /// Fills the grid with one row per app, sorted and numbered by label, and fits the columns to their texts.
  void fill(const Inventory& inventory);
  /// Fills the grid anew. The current app, the sorting, the search and the checks stay.
  void refill(const Inventory& inventory);
  /// All apps of the list.
  QList<ListedBuild> listedBuilds() const;
  /// Shows these icons, by package, and no others.
  void setIcons(const QHash<QString, QIcon>& icons);
  void addIcon(const QString& package, const QIcon& icon);
  /// The list was read from `headset` just now.
  void noteRead(const HeadsetIdentity& headset);
  /// `answering` is the headset that has answered last; one without a number tells nothing.
  void noteAnswering(const HeadsetIdentity& answering);
  const HeadsetIdentity& headset() const { return m_headset; }
  const HeadsetIdentity& answering() const { return m_answering; }
  /// The list is of another headset than the one that has answered last.
  bool isOfAnotherHeadset() const;
  /// Shows above the grid what could not be read; an empty text removes it.
  void setNotice(const QString& notice);
  /// Says beside the buttons what is under way; an empty text ends it.
  void sayWork(const QString& work);
  /// Shows an operation's result in place of the notice until the next operation: one or two lines.
  void sayOutcome(QStringList lines);
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
  void connectGrid();
  void sortBy(int column, SortCode code);
  void MSFlexGrid1_Click();
  void MSFlexGrid1_MouseMove(Qt::MouseButtons Button);
  void MSFlexGrid1_MouseDown(Qt::MouseButton Button);
  void MouseWheel(int turn, QPoint place);
  void tmrSearch_Timer();
  void clearSearch();
  void createButtons();
  void toggle(int record);
  void toggleAll();
  void showChecks();
  void showRead();
  QString packageOf(int record) const;
  ChosenApp appAt(int record) const;
  QPoint layButtons(int left, int top);
  void AutoSizeColumns();
  void fitColumns();
  void countShown();
  void Form_Resize();
  void Form_Unload();

  void showNotice();
  void alignNotice();

  WheelNotches m_notches;
  std::vector<ColumnWidth> m_columnWidths;
  bool m_fitting = false;
  QString m_notice;
  QString m_outcome;
  QString m_LastSearchText;
  bool m_SearchPending = false;
  QSet<QString> m_checked;        // packages
  QHash<QString, QIcon> m_icons;  // by package
  QString m_work;
  QTime m_readAt;
  HeadsetIdentity m_headset;
  HeadsetIdentity m_answering;
  int m_LastTipRow = 0;
  int m_LastTipCol = 0;
};

}  // namespace orvanta
