#pragma once

#include <QCoroTask>
#include <QImage>
#include <QObject>
#include <array>
#include <functional>
#include <memory>
#include <vector>

#include "core/workbench.h"
#include "install/install_workflow.h"
#include "queue/bundle.h"
#include "queue/unattended_desktop.h"

namespace orvanta {

class UnpackedBundle;

/// One package that is to be installed, and how far it is.
struct QueueItem {
  enum class Stage {
    Unread,
    Ready,
    Running,
    Waiting,  ///< for the headset to come back
    Done,
    Partly,  ///< installed, but not all of its files are there
    Failed,
    Skipped,
    Unusable,  ///< nothing that could be installed
  };

  QString path;
  Stage state = Stage::Unread;
  Bilingual words = {};  ///< how it ended, or why it cannot begin
  std::array<QString, 51> fields = {};
  QImage icon = {};
  qint64 bytes = 0;           ///< with its expansion files
  QStringList ownFiles = {};  ///< expansion files beside the package
  QStringList files = {};     ///< those that were given by themselves
  std::optional<QString> onHeadset =
      {};  ///< the build there, empty when not installed; nothing while unknown
  std::optional<Outcome> installed = {};

  QString title() const;
  bool isNewerOnHeadset() const;
  bool hasEnded() const { return state >= Stage::Done; }
};

/// Installs several packages one after the other by the steps of the install workflow. It has a workbench of
/// its own, so that the main window keeps its package, and holds the main window's turn while it runs.
class InstallQueue : public QObject {
  Q_OBJECT

 public:
  /// `chooseDevice` opens the list of devices.
  InstallQueue(Workbench& main, std::function<void()> chooseDevice);
  ~InstallQueue() override;

  const std::vector<QueueItem>& items() const { return m_items; }
  Workbench& bench() { return m_bench; }
  bool isBusy() const { return m_busy; }
  /// Over all items that are to be installed.
  qint64 doneBytes() const { return m_doneBytes; }
  qint64 allBytes() const { return m_allBytes; }

  /// Takes packages, bundles, folders and expansion files, and reads them.
  QCoro::Task<> add(QStringList paths);
  /// Asks what speaks against it, once, and installs what is ready.
  QCoro::Task<> start();
  /// What failed, and what came over only partly, becomes ready again.
  void retry();
  /// Leaves one out, or takes it in again; the one that runs is ended.
  void skip(qsizetype row);
  /// Ends what runs, and begins no more.
  void stop();

  /// How it went, a line an item, for a user to keep.
  QString report() const;

 Q_SIGNALS:
  void changed();     ///< an item, or which there are
  void progressed();  ///< the bytes
  void ended();       ///< of start()

 private:
  QCoro::Task<> read();
  QCoro::Task<> readPackageOf(qsizetype row);
  void readBundleOf(QueueItem& item);
  QCoro::Task<> askBuilds();
  QCoro::Task<bool> mayStart();
  QCoro::Task<> install(qsizetype row);
  QCoro::Task<bool> unpack(qsizetype row);
  QCoro::Task<> awaitHeadset(qsizetype row);
  void load(const QueueItem& item);
  void end(qsizetype row, const InstallRun& run);
  void set(qsizetype row, QueueItem::Stage state, const Bilingual& words = {});
  QueueItem& item(qsizetype row) { return m_items[static_cast<size_t>(row)]; }

  Workbench& m_main;
  std::function<void()> m_chooseDevice;
  UnattendedDesktop m_unattended;
  Workbench m_bench;
  InstallWorkflow m_install;
  std::vector<QueueItem> m_items;
  std::unique_ptr<UnpackedBundle> m_unpacked;
  HeadsetTraits m_traits;
  QString m_serial;  // of the headset that the last start was for
  bool m_busy = false;
  bool m_stopped = false;
  bool m_skipsThis = false;
  qint64 m_throughBytes = 0;
  qint64 m_doneBytes = 0;
  qint64 m_allBytes = 0;
};

}  // namespace orvanta
