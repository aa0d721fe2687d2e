// A whole backup of many apps against bare pulls of the same files, and its restore against bare installs and
// pushes. Arguments: apps, megabytes in each, and bytes a second of the link; 10, 100 and 100000000 unless
// given, which is what a good cable gives. With 0 it is as fast as the processors go, and what is compared is
// who gets them.

#include <sys/resource.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <functional>

#include "backups/app_backup.h"
#include "backups/app_restore.h"
#include "core/workbench.h"
#include "sample_package.h"
#include "testing/virtual_headset.h"
#include "yes_desktop.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

constexpr double mostForBackup = 1.10;
constexpr double mostForRestore = 1.15;
constexpr int rounds = 3;

QString nameOf(int app) {
  return u"com.example.bench%1"_s.arg(app);
}

qint64 timed(const std::function<void()>& work) {
  // What was written before is not to be waited for in this measurement.
  ::sync();
  QElapsedTimer timer;
  timer.start();
  work();
  return timer.elapsed();
}

/// The event loop until `task` has come to its end.
template <typename Result>
Result awaited(QCoro::Task<Result> task) {
  std::optional<Result> result;
  auto waiting = [](QCoro::Task<Result> of, std::optional<Result>& to) -> QCoro::Task<> { to = co_await of; };
  auto whole = waiting(std::move(task), result);
  while (!result) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  return *result;
}

double median(QList<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  const QStringList words = QCoreApplication::arguments().mid(1);
  const int apps = words.value(0, u"10"_s).toInt();
  const qint64 megabytes = words.value(1, u"100"_s).toLongLong();
  const QString rate = words.value(2, u"100000000"_s);

  test::VirtualHeadset headset;
  if (const QString failure = headset.start(); !failure.isEmpty()) {
    std::fprintf(stderr, "%s\n", qPrintable(failure));
    return 2;
  }
  QList<AppToSave> toSave;
  for (int app = 0; app < apps; ++app) {
    const QString name = nameOf(app);
    const QString file = headset.workPath(u"%1.apk"_s.arg(app));
    const QString problem = SamplePackage{.package = name, .paddingBytes = 1 << 20}.write(file);
    if (!problem.isEmpty() || headset.adb({u"install"_s, file}).exitCode != 0) return 2;
    const QString obb = u"/sdcard/Android/obb/%1/main.obb"_s.arg(name);
    headset.writeDeviceFile(obb, QByteArray((megabytes - 3) << 20, static_cast<char>(app)));
    for (int i = 0; i < 20; ++i)
      headset.writeDeviceFile(u"/sdcard/Android/data/%1/files/%2/save"_s.arg(name).arg(i),
                              QByteArray(100 << 10, 's'));
    toSave << AppToSave{name, name, megabytes << 20};
  }
  if (rate != u"0"_s) headset.setFault(u"bytes_per_second"_s, rate);

  YesDesktop desktop;
  Workbench bench(desktop);
  QList<double> backupRatios;
  QList<double> restoreRatios;
  for (int round = 0; round < rounds; ++round) {
    const QTemporaryDir bare(headset.workPath(u"bare"_s));
    const QTemporaryDir ours(headset.workPath(u"ours"_s));
    QStringList packages;
    for (int app = 0; app < apps; ++app)
      packages
          << headset.adb({u"shell"_s, u"pm"_s, u"path"_s, nameOf(app)}).output.trimmed().section(u':', 1);
    const auto at = [&bare](int app) { return bare.filePath(nameOf(app)); };
    const qint64 pulls = timed([&] {
      for (int app = 0; app < apps; ++app) {
        QDir().mkpath(at(app));
        headset.adb({u"pull"_s, packages[app], at(app) + u"/base.apk"_s}, 600'000);
        for (const QString& part : {u"obb"_s, u"data"_s})
          headset.adb({u"pull"_s, u"/sdcard/Android/%1/%2"_s.arg(part, nameOf(app)), at(app) + u'/' + part},
                      600'000);
      }
    });
    bool good = true;
    const qint64 backup = timed([&] {
      const auto turn = bench.turn.begin();
      BackupRun run(bench, bench.objDOS, ours.path(), {u"Bench"_s, u"1"_s});
      for (const BackupOutcome& outcome : awaited(run.save(toSave)))
        good &= outcome.kind == BackupOutcome::Kind::Saved;
    });
    const qint64 pushes = timed([&] {
      for (int app = 0; app < apps; ++app) {
        headset.adb({u"install"_s, u"-r"_s, at(app) + u"/base.apk"_s}, 600'000);
        for (const QString& part : {u"obb"_s, u"data"_s})
          headset.adb({u"push"_s, at(app) + u'/' + part + u"/."_s,
                       u"/sdcard/Android/%1/%2/"_s.arg(part, nameOf(app))},
                      600'000);
      }
    });
    const qint64 restore = timed([&] {
      const auto turn = bench.turn.begin();
      RestoreRun run(bench, bench.objDOS);
      for (const RestoreOutcome& outcome : awaited(run.restore(savedAppsIn(ours.path()))))
        good &= outcome.good;
    });
    if (!good) {
      std::fprintf(stderr, "%s\n", qPrintable(bench.console.Text()));
      return 2;
    }
    std::printf("backup %lld ms, bare pulls %lld ms; restore %lld ms, bare installs and pushes %lld ms\n",
                static_cast<long long>(backup), static_cast<long long>(pulls),
                static_cast<long long>(restore), static_cast<long long>(pushes));
    backupRatios << static_cast<double>(backup) / static_cast<double>(pulls);
    restoreRatios << static_cast<double>(restore) / static_cast<double>(pushes);
  }
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf(
      "backup / pulls = %.2f (at most %.2f); restore / pushes = %.2f (at most %.2f); %ld MiB at most in "
      "memory\n",
      median(backupRatios), mostForBackup, median(restoreRatios), mostForRestore, usage.ru_maxrss / 1024);
  return median(backupRatios) <= mostForBackup && median(restoreRatios) <= mostForRestore ? 0 : 1;
}
