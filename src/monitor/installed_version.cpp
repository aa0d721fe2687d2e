#include "monitor/installed_version.h"

#include "adb/device_names.h"
#include "adb/installed_build.h"
#include "adb/lines.h"
#include "core/workbench.h"
#include "monitor/installed_build.h"
#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

/// The output of `dumpsys package`, or nothing for a name that must not reach the device's shell. Without a
/// name the reply would be about all packages.
QCoro::Task<QString> askDevice(Workbench& bench, DOSOutputs& runner, QString package) {
  if (package.isEmpty() || !isFitPackageName(package)) co_return QString();
  const QString line = dumpsysLine(Host::current(), package);
  const QString output = co_await bench.runQuietly(runner, line);
  co_return output;
}

/// Says why nothing is asked about a package of such a name.
void sayUnfit(Workbench& bench, const QString& package) {
  if (!isFitPackageName(package))
    bench.say(inFace(u"包名不能用于设备命令"_s, u"The package name cannot be used in a device command"_s));
}

}  // namespace

QCoro::Task<bool> showInstalledBuildAtStart(Workbench& bench) {
  State& state = bench.state;
  const QString package = state.package.package();
  const QString output = co_await askDevice(bench, bench.objDOS, package);
  // A question that was stopped says nothing about the package.
  if (output.isEmpty() && bench.turn.stopped()) co_return false;
  const QString number = installedBuildIn(output);
  state.package.ManifestFields[FieldInstalledBuild] = number;
  const BuildVerdict verdict = compareBuilds(number, state.package.versionCode());
  state.setInstalledBuild(verdict, number);
  if (verdict == BuildVerdict::NotInstalled) {
    bench.console.setText(u"\r\n"_s + designed(u"未安装") + u"\r\n"_s);
    state.setMayUninstall(false);
    sayUnfit(bench, package);
    co_return true;
  }
  if (verdict == BuildVerdict::Undecided) co_return false;
  bench.console.setText(u"\r\n"_s + designed(u"%1 Buildnumber found").arg(wordOf(verdict)) + u"\r\n"_s);
  co_return true;
}

QCoro::Task<bool> CompareInstalledVersion(Workbench& bench, DOSOutputs& runner) {
  State& state = bench.state;
  if (state.package.ApkFileName.isEmpty() || state.package.NoApkLoaded == 1) co_return false;
  const quint64 asked = bench.turn.count();
  const QString output = co_await askDevice(bench, runner, state.package.package());
  if (bench.turn.count() != asked || output.isEmpty()) co_return state.headset().InstalledSeen;
  const QString number = installedBuildIn(output);
  const BuildVerdict verdict = compareBuilds(number, state.package.versionCode());
  state.setInstalledBuild(verdict, number);
  state.setInstalledSeen(verdict != BuildVerdict::NotInstalled);
  co_return state.headset().InstalledSeen;
}

}  // namespace orvanta
