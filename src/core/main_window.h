#pragma once

#include <QCoroTask>
#include <array>
#include <functional>
#include <memory>
#include <optional>

#include "core/dosoutputs.h"
#include "core/main_controls.h"
#include "core/module1.h"
#include "core/settings_store.h"
#include "core/turn.h"
#include "ui/desktop.h"
#include "ui/form.h"

namespace orvanta {

/// The steps of start-up that features carry out. The main window knows their order, not what they do.
class StartupSteps {
 public:
  virtual ~StartupSteps() = default;

  /// Shows the tip; returns when the user has closed it.
  virtual QCoro::Task<> showTip() = 0;
  /// Offers to make the file manager's entry. Every way through it ends the process.
  virtual QCoro::Task<> runFirstRunDialog() = 0;
  /// Reads the package into `ManifestFields` and `PermissionCount`.
  virtual QCoro::Task<> readBadging() = 0;
  virtual QCoro::Task<> StorageReport() = 0;
  /// Takes the icon out of the package and shows it in `Picture1`.
  virtual QCoro::Task<> showIcon() = 0;
  /// Asks the device for the installed build, gives the verdict, and lists the expansion files beside the
  /// package.
  virtual QCoro::Task<> showInstalledBuild() = 0;
};

/// What the main window is given by the composition root.
struct MainWindowNeeds {
  Desktop& desktop;
  SettingsStore& settings;
  Module1& module;
  /// Ends the process with all its windows.
  std::function<void()> endProcess;
};

/// The main window: the state of the loaded package, the console, the order of start-up, the end of the
/// process.
class apkinfo : public Form, public MainControls, public CommandReports {
  Q_OBJECT

 public:
  explicit apkinfo(MainWindowNeeds needs);
  ~apkinfo() override;

  QString ApkPath;      ///< the command-line text, whole and as it came
  QString ApkFileName;  ///< its file name
  int NoApkLoaded = 0;  ///< 1 when started with no text
  std::unique_ptr<DOSOutputs> objDOS;
  QString ToolOutput;  ///< output of the last tool call that was kept
  std::array<QString, 51>
      ManifestFields;          ///< 1 package, 2 version code, 3 version name, 4 label, 5 head tracking,
                               ///< 6 installed build, 9 icon path, 11 to 50 the first 40 permissions
  int PermissionCount = 0;     ///< permission lines seen; can exceed 40
  QString TempZipPath;         ///< the package's path under its temporary name
  QString IconFilePath;        ///< the extracted icon
  bool RenameBackDue = false;  ///< the package was renamed and must get its name back
  bool WatcherHold = false;    ///< while true the watcher's tick does nothing
  qint16 AnimationFrame = 0;   ///< frame of the banner now shown
  bool InstalledSeen = false;  ///< last answer of the installed-version check
  QString NormalBackColor;     ///< `Label6`'s colours at the start, as decimal text
  QString NormalForeColor;

  Desktop& desktop() const { return m_needs.desktop; }
  SettingsStore& settings() const { return m_needs.settings; }
  Module1& module() const { return m_needs.module; }
  Turn& turn() { return m_turn; }

  /// The whole of start-up, before the window appears. Returns false when it has ended the process instead.
  QCoro::Task<bool> Form_Load(QString commandText, StartupSteps& steps);

  /// Runs `line`, or again what `runner` ran last when there is none, and keeps the text out of the console.
  QCoro::Task<QString> runQuietly(DOSOutputs& runner, std::optional<QString> line);

  /// A line of the program's own in the console, with its end in view.
  void say(const QString& message);

  /// Takes the focus to `refuge`, or to the console where that is disabled, if one of `going` or a control in
  /// it has it: they are about to go out of view.
  void keepFocusOutOf(std::initializer_list<QWidget*> going, QWidget* refuge);

  /// Ends the process at once: no closing steps run, the adb server is left as it is.
  void QuitProgram();

  void commandError(const QString& commandLine) override;
  QCoro::Task<> criticalMessage(QString text) override;

 Q_SIGNALS:
  /// The window is about to close, once no handler runs any more.
  void closing();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void prepareStart();
  void restoreSettings();
  QCoro::Task<bool> startWithoutPath(StartupSteps& steps);
  QCoro::Task<> startWithPath(StartupSteps& steps);
  QCoro::Task<> Form_QueryUnload();
  void objDOS_ReceiveOutputs(const QString& CommandOutputs);
  void Check1_Click();
  void Check2_Click();
  void sayStopped();
  void Picture2_MouseMove(Qt::MouseButtons Button);

  MainWindowNeeds m_needs;
  Turn m_turn;
  bool m_closing = false;
  bool m_ended = false;
};

}  // namespace orvanta
