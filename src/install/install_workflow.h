#pragma once

#include <QCoroTask>
#include <QMap>
#include <QObject>
#include <functional>
#include <memory>

#include "install/guard.h"
#include "install/obb_selection.h"
#include "install/verdict.h"

namespace orvanta {

class SendProgress;
class Workbench;

/// The button "安装": puts the loaded package on the headset, with the expansion files beside it.
///
/// A straight sequence of steps that no failure stops, so that the window is always unlocked. adb's own words
/// stand in the console; the status line gives the verdict.
class InstallWorkflow : public QObject {
  Q_OBJECT

 public:
  /// `window` is the owner of the selection window; may be null. `chooseDevice` opens the list of devices.
  InstallWorkflow(Workbench& bench, QWidget* window, std::function<void()> chooseDevice);
  ~InstallWorkflow() override;

  QCoro::Task<> Command1_Click();

  /// What a queue wants of one package.
  struct Unattended {
    QStringList files;                 ///< expansion files besides those beside the package
    std::optional<Outcome> installed;  ///< the package has come over in an earlier try, whose files did not
  };
  /// The same steps with no question and no window. All files go along, but only with an installed package,
  /// and one of another size on the headset is sent again, since an earlier try may have left it so.
  QCoro::Task<InstallRun> installUnattended(Unattended wanted);

  /// The selection window, null while it is not loaded.
  Form3* selection() const { return m_Form3.get(); }

 private:
  void lock();
  void unlock();
  void scan();
  SendPlan plan() const;
  Form3& loadedSelection();
  /// False if the selection window was deleted together with this.
  QCoro::Task<bool> selectFiles();
  QCoro::Task<> installAndTransfer(bool withFiles);
  QCoro::Task<QString> runInstall();
  QCoro::Task<> ObbTransfer(QString Reply);
  QCoro::Task<QString> listDeviceFolder();
  QCoro::Task<> transferEntry(int i, bool removeOldFolder);
  QCoro::Task<> checkSizes();
  bool isChosen(int i);
  void beginRun();
  void noteFiles(const QString& Listing);
  void addFile(const QString& path);
  bool isThere(SentFile& file, const QString& Listing, const ListedFiles& listed) const;
  SentFile& fileOf(int i) { return m_run.files[m_placeInRun.value(i)]; }
  qint64 bytesToSend() const;
  void giveVerdict();

  Workbench& m_bench;
  QWidget* m_window;
  std::function<void()> m_chooseDevice;
  std::unique_ptr<Form3> m_Form3;
  bool m_unloadDue = false;
  bool m_attended = true;
  InstallRun m_run;
  QMap<int, qsizetype> m_placeInRun;  // of a chosen entry in the run's files
  QString m_installReply;
  QString m_deviceFolder;  // that files were sent into
  SendProgress* m_progress = nullptr;
};

}  // namespace orvanta
