#include "monitor/installed_version.h"

#include "core/main_window.h"
#include "core/tools.h"
#include "monitor/installed_build.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr FormColor green = 65280;
constexpr FormColor red = 255;
constexpr FormColor white = 16777215;
const QString notInstalled = u"未安装"_s;

/// The output of `dumpsys package`, or nothing for a name that must not reach the device's shell.
QCoro::Task<QString> askDevice(apkinfo& form, DOSOutputs& runner, QString package) {
  if (!isFitPackageName(package)) co_return QString();
  const QString line = dumpsysLine(Host::current(), package);
  const QString output = co_await form.runQuietly(runner, line);
  co_return output;
}

/// Paints the rows in which a build was found. Returns the word for the console, empty for the undecided one.
QString paint(Label* label, BuildVerdict verdict, const QString& number) {
  QString word;
  switch (verdict) {
    case BuildVerdict::Older:
      word = u"Older"_s;
      break;
    case BuildVerdict::Newer:
      word = u"Newer"_s;
      break;
    case BuildVerdict::Same:
      word = u"Same"_s;
      break;
    case BuildVerdict::NotInstalled:
    case BuildVerdict::Undecided:
      return word;
  }
  label->setCaption(u" %1 (%2)"_s.arg(number, word));
  label->setToolTip(u' ' + number);
  label->setBackColor(verdict == BuildVerdict::Older ? green : red);
  if (verdict != BuildVerdict::Older) label->setForeColor(white);
  return word;
}

/// Says why nothing is asked about a package of such a name.
void sayUnfit(apkinfo& form, const QString& package) {
  if (!isFitPackageName(package))
    form.say(u"包名不能用于设备命令 (The package name cannot be used in a device command)"_s);
}

}  // namespace

QCoro::Task<bool> showInstalledBuildAtStart(apkinfo& form) {
  const QString package = form.ManifestFields[1];
  form.ToolOutput = co_await askDevice(form, *form.objDOS, package);
  form.ManifestFields[6] = installedBuildIn(form.ToolOutput);
  form.Timer1->start();
  const QString number = form.ManifestFields[6];
  const BuildVerdict verdict = compareBuilds(number, form.ManifestFields[2]);
  if (verdict == BuildVerdict::NotInstalled) {
    form.Label6->setCaption(notInstalled);
    form.txtOutputs->setText(u"\r\n"_s + notInstalled + u"\r\n"_s);
    form.Command4->setEnabled(false);
    form.Command5->setEnabled(false);
    sayUnfit(form, package);
    co_return true;
  }
  const QString word = paint(form.Label6, verdict, number);
  if (word.isEmpty()) co_return false;
  form.txtOutputs->setText(u"\r\n"_s + word + u" Buildnumber found\r\n"_s);
  co_return true;
}

QCoro::Task<bool> CompareInstalledVersion(apkinfo& form, DOSOutputs& runner) {
  if (form.Label5->Caption().isEmpty() || form.NoApkLoaded == 1) co_return false;
  const quint64 asked = form.turn().count();
  const QString output = co_await askDevice(form, runner, form.Label2->Caption());
  if (form.turn().count() != asked) co_return form.InstalledSeen;
  form.ToolOutput = output;
  if (output.isEmpty()) co_return form.InstalledSeen;
  form.InstalledSeen = true;
  const QString number = installedBuildIn(output);
  const BuildVerdict verdict = compareBuilds(number, form.Label4->Caption());
  if (verdict == BuildVerdict::NotInstalled) {
    form.Label6->setCaption(notInstalled);
    form.Label6->setBackColor(form.NormalBackColor.toInt());
    form.Label6->setForeColor(form.NormalForeColor.toInt());
    form.InstalledSeen = false;
    co_return false;
  }
  paint(form.Label6, verdict, number);
  co_return true;
}

}  // namespace orvanta
