#include "core/report.h"

#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QPointer>
#include <QSaveFile>
#include <QScreen>
#include <QStandardPaths>
#include <QSysInfo>

#include "adb/chosen_device.h"
#include "adb/lines.h"
#include "core/report_text.h"
#include "core/workbench.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr std::chrono::seconds longestQuestion{5};

QString row(const QString& name, const QString& value) {
  return name + u": "_s + (value.isEmpty() ? u"-"_s : value) + u'\n';
}

QString versions(const QString& tool) {
  const QScreen* screen = QGuiApplication::primaryScreen();
  QString display = QGuiApplication::platformName();
  if (screen != nullptr)
    display += u", %1 × %2, scale %3"_s.arg(screen->size().width())
                   .arg(screen->size().height())
                   .arg(screen->devicePixelRatio());
  return row(QCoreApplication::applicationName(), QCoreApplication::applicationVersion()) +
         row(u"adb"_s, tool.trimmed().replace(u"\r\n"_s, u"; "_s)) +
         row(u"Qt"_s, QString::fromLatin1(qVersion())) +
         row(u"System"_s,
             u"%1, %2 %3, %4"_s.arg(QSysInfo::prettyProductName(), QSysInfo::kernelType(),
                                    QSysInfo::kernelVersion(), QSysInfo::currentCpuArchitecture())) +
         row(u"Desktop"_s, qEnvironmentVariable("XDG_CURRENT_DESKTOP")) + row(u"Display"_s, display) +
         row(u"Locale"_s, QLocale::system().name());
}

QString whole(const Status& status) {
  return status.wholeText().replace(u'\n', u" / "_s);
}

QString buildOf(const InstalledBuild& build) {
  if (!build.verdict) return {};
  return *build.verdict == BuildVerdict::NotInstalled ? u"not installed"_s
                                                      : build.number + u' ' + wordOf(*build.verdict);
}

QString stateOf(const Workbench& bench) {
  const LoadedPackage& package = bench.state.package;
  const Headset& headset = bench.state.headset();
  QString room;
  if (headset.storage.room) {
    room = u"%1 of %2 bytes free"_s.arg(headset.storage.room->available.bytes)
               .arg(headset.storage.room->size.bytes);
  }
  QString text = row(u"Line"_s, whole(bench.status.first()));
  if (const auto trouble = bench.status.second()) text += row(u"Line, too"_s, whole(*trouble));
  text +=
      row(u"Headset"_s, headset.serial) + row(u"Chosen"_s, chosenDevice()) + row(u"Storage"_s, room) +
      row(u"Package file"_s, package.ApkPath) +
      row(u"Its size"_s, QString::number(QFileInfo(package.ApkPath).size())) +
      row(u"Package"_s, package.package()) +
      row(u"Version"_s, package.ManifestFields[FieldVersionName] + u" ("_s + package.versionCode() + u')') +
      row(u"Installed build"_s, buildOf(headset.build)) +
      row(u"Grant permissions"_s, bench.state.Grant ? u"on"_s : u"off"_s) +
      row(u"A tool is running"_s, bench.turn.taken() ? u"yes"_s : u"no"_s);
  for (const char* variable :
       {"ANDROID_ADB_SERVER_PORT", "ADB_SERVER_SOCKET", "ADB_TRACE", "QT_SCALE_FACTOR"}) {
    if (qEnvironmentVariableIsSet(variable))
      text += row(QString::fromLatin1(variable), qEnvironmentVariable(variable));
  }
  return text;
}

QString suggestedPath() {
  QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  if (!QFileInfo(folder).isDir()) folder = QDir::homePath();
  return folder + u"/Orvanta report %1.txt"_s.arg(QDate::currentDate().toString(Qt::ISODate));
}

/// Why it could not be written; empty on success.
QString write(const QString& path, const QString& text) {
  QSaveFile file(path);
  const bool written = file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0 && file.commit();
  return written ? QString() : file.errorString();
}

}  // namespace

Report::Report(Workbench& bench) : m_bench(bench) {
  m_limit.setSingleShot(true);
  m_limit.setInterval(longestQuestion);
  connect(&m_limit, &QTimer::timeout, &m_asking, &Turn::requestStop);
}

QCoro::Task<QString> Report::toolVersion() {
  const auto turn = m_asking.begin();
  if (!turn) co_return QString();
  m_limit.start();
  const QPointer<Report> lasting(this);
  const QString line = versionLine(Host::current());
  const QString reply = co_await m_versionDOS.ExecuteCommand(line);
  if (lasting.isNull()) co_return QString();
  m_limit.stop();
  co_return reply;
}

QCoro::Task<QString> Report::text() {
  const QPointer<Report> lasting(this);
  const QString tool = co_await toolVersion();
  if (lasting.isNull()) co_return QString();
  PrivateThings things = privateThingsOfThisUser();
  things.serials = {m_bench.state.headset().serial, chosenDevice()};
  const QString note = inFace(
      u"不含您的用户名、个人文件夹的路径和设备序列号；发送前仍请看一遍。"_s,
      u"Your user name, the path of your home folder and serial numbers are left out; still, read it before "
      "you send it."_s);
  const QString report = reportText({{u"Orvanta report"_s, note},
                                     {u"Versions"_s, versions(tool)},
                                     {u"State"_s, stateOf(m_bench)},
                                     {u"Console"_s, m_bench.console.Text()}},
                                    things);
  co_return report;
}

QCoro::Task<> Report::save_Click() {
  SaveFileQuestion question;
  question.title = inFace(u"保存报告"_s, u"Save a report"_s);
  question.suggestedPath = suggestedPath();
  question.filters = QStringList(u"Text (*.txt)"_s);
  QString path = co_await m_bench.desktop.askSaveFile(question);
  if (path.isEmpty()) co_return;
  if (QFileInfo(path).suffix().isEmpty()) path += u".txt"_s;
  if (QFileInfo::exists(path)) {
    MessageBox box;
    box.text = inFace(u"已有这个文件，要替换吗？"_s, u"This file exists. Replace it?"_s) + u"\r\n"_s + path;
    box.icon = BoxIcon::Question;
    box.buttons = BoxButtons::YesNo;
    box.preselected = BoxAnswer::No;
    const BoxAnswer answer = co_await m_bench.desktop.showBox(box);
    if (answer != BoxAnswer::Yes) co_return;
  }
  const QString told = co_await text();
  if (told.isEmpty()) co_return;
  const QString problem = write(path, told);
  if (!problem.isEmpty()) {
    // A box, since the line may have the running tool in its place.
    co_await m_bench.criticalMessage(inFace(u"报告没有保存"_s, u"The report was not saved"_s) + u"\r\n"_s +
                                     path + u"\r\n\r\n"_s + problem);
    co_return;
  }
  Desktop& desktop = m_bench.desktop;
  const QUrl folder = QUrl::fromLocalFile(QFileInfo(path).absolutePath());
  m_bench.status.setNotice({Status::Sign::Hint,
                            {u"报告已保存"_s, u"Report saved"_s},
                            {path, path},
                            {u"打开文件夹"_s, u"Open Folder"_s},
                            [&desktop, folder] { desktop.open(folder); }});
}

}  // namespace orvanta
