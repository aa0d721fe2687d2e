#pragma once

#include <QCoroTask>
#include <functional>

#include "core/main_controls.h"
#include "core/settings_store.h"
#include "core/workbench.h"
#include "ui/form.h"

namespace orvanta {

/// The steps of start-up that features carry out. The main window knows their order, not what they do.
class StartupSteps {
 public:
  virtual ~StartupSteps() = default;

  /// Sets right what earlier runs left when they died. Returns the lines for the user. If the package was
  /// opened by its temporary name, the argument becomes its own name.
  virtual QStringList setRight(QString& commandText) = 0;
  /// Shows the tip; returns when the user has closed it.
  virtual QCoro::Task<> showTip() = 0;
  /// Offers to make the file manager's entry. Every way through it ends the process.
  virtual QCoro::Task<> runFirstRunDialog() = 0;
  /// Reads the package into `ManifestFields` and `PermissionCount`.
  virtual QCoro::Task<> readBadging() = 0;
  virtual QCoro::Task<> StorageReport() = 0;
  /// Extracts the package's icon and shows it in `Picture1`.
  virtual QCoro::Task<> showIcon() = 0;
  /// Asks the device for the installed build, shows the verdict, and lists the expansion files beside the
  /// package.
  virtual QCoro::Task<> showInstalledBuild() = 0;
};

/// What the composition root gives to the main window.
struct MainWindowNeeds {
  Workbench& bench;
  SettingsStore& settings;
  /// Ends the process with all its windows.
  std::function<void()> endProcess;
};

/// The main window: shows the state and the console, and owns the order of start-up and shutdown. It decides
/// nothing about a package or a device.
class apkinfo : public Form, public MainControls {
  Q_OBJECT

 public:
  explicit apkinfo(MainWindowNeeds needs);
  ~apkinfo() override;

  /// All of start-up, before the window appears. Returns false if it ended the process instead.
  QCoro::Task<bool> Form_Load(QString commandText, StartupSteps& steps);

  /// Moves the focus to `opener`, or to the console if that is disabled, if one of `going` or a control in it
  /// has it: they are about to be hidden.
  void keepFocusOutOf(std::initializer_list<QWidget*> going, QWidget* opener);

  /// Closes the program within seconds because the system asks for it: stops what is under way, closes open
  /// questions unanswered, and runs the closing steps when the handler has ended.
  void endInOrder();
  /// Ends the process at once, without closing steps; the adb server is left as it is.
  void QuitProgram();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void prepareStart();
  void restoreSettings();
  void watchForHints();
  QCoro::Task<> startWithoutPath(StartupSteps& steps);
  QCoro::Task<> startWithPath(StartupSteps& steps);
  void beginClosing();
  QCoro::Task<> Form_QueryUnload();
  void showStatus();
  void callUser(const Status& verdict);
  void showPackage();
  void showStorage();
  void showInstalledBuild();
  void showAvailability();
  void Check1_Click();
  void Check2_Click();
  void Timer1_Timer();
  void Timer2_Timer();
  void Picture2_MouseMove(Qt::MouseButtons Button);

  MainWindowNeeds m_needs;
  Workbench& m_bench;
  FormColor m_NormalBackColor = 0;  // of `Label6` at the start
  FormColor m_NormalForeColor = 0;
  qint16 m_AnimationFrame = 0;  // frame of the banner now shown
  bool m_closing = false;
  bool m_ending = false;
  bool m_ended = false;
};

}  // namespace orvanta
