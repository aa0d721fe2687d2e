#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QSocketNotifier>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "adb_server_guard.h"
#include "seed.h"
#include "virtual_device.h"

namespace {

using namespace Qt::StringLiterals;
using namespace orvanta::headset;

int g_endPipe[2];

void endOnSignal(int) {
  const char byte = 0;
  [[maybe_unused]] const ssize_t done = ::write(g_endPipe[1], &byte, 1);
}

/// SIGTERM, SIGINT and SIGHUP end the event loop, so that everything is cleaned up.
void watchSignals(QCoreApplication& app) {
  if (::pipe2(g_endPipe, O_CLOEXEC | O_NONBLOCK) != 0) return;
  auto* notifier = new QSocketNotifier(g_endPipe[0], QSocketNotifier::Read, &app);
  QObject::connect(notifier, &QSocketNotifier::activated, &app, &QCoreApplication::quit);
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) std::signal(number, endOnSignal);
  std::signal(SIGPIPE, SIG_IGN);
}

int complain(const QString& text) {
  std::fprintf(stderr, "virtual-headset: %s\n", qPrintable(text));
  return EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  QCoreApplication::setApplicationName(u"virtual-headset"_s);
  QCoreApplication::setApplicationVersion(QStringLiteral(ORVANTA_VERSION));
  QCommandLineParser parser;
  parser.setApplicationDescription(u"A headset that the real adb talks to, without the headset."_s);
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption state(u"state"_s, u"Folder of all that the headset remembers."_s, u"dir"_s);
  const QCommandLineOption port(u"port"_s, u"Port on 127.0.0.1; 0 takes a free one."_s, u"port"_s, u"0"_s);
  const QCommandLineOption serial(u"serial"_s, u"Serial number that the headset's properties show."_s,
                                  u"text"_s, u"1WMHH800X00000"_s);
  const QCommandLineOption ready(u"ready-file"_s,
                                 u"File that gets the port number when the headset is ready."_s, u"file"_s);
  const QCommandLineOption log(u"log"_s, u"File of the opened services; services.log in the state folder."_s,
                               u"file"_s);
  const QCommandLineOption features(
      u"features"_s, u"Features that the headset offers, with commas."_s, u"list"_s,
      u"shell_v2,cmd,stat_v2,ls_v2,fixed_push_mkdir,fixed_push_symlink_timestamp"_s);
  const QCommandLineOption apps(u"apps"_s, u"Fills the headset with so many apps."_s, u"count"_s, u"0"_s);
  const QCommandLineOption nested(u"nested-code-paths"_s, u"New apps go to /data/app/~~X==/NAME-Y==."_s);
  const QCommandLineOption server(
      u"adb-server"_s, u"Port of the adb server that is told of the headset whenever it comes up."_s,
      u"port"_s);
  const QCommandLineOption own(
      u"own-adb-server"_s, u"Ends that adb server with the headset, or with the process that started it."_s);
  const QCommandLineOption parent(u"exit-with-parent"_s, u"Ends when the process that started it is gone."_s);
  parser.addOptions({state, port, serial, ready, log, features, apps, nested, server, own, parent});
  parser.process(app);
  if (!parser.isSet(state)) return complain(u"--state is missing"_s);

  watchSignals(app);
  if (parser.isSet(parent)) {
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() == 1) return complain(u"the process that started it is gone"_s);
  }

  DeviceOptions options;
  if (!QDir().mkpath(parser.value(state))) return complain(u"cannot make "_s + parser.value(state));
  options.stateDir = QFileInfo(parser.value(state)).canonicalFilePath();
  options.logFile = parser.isSet(log) ? parser.value(log) : options.stateDir + "/services.log"_L1;
  options.toolPath = QCoreApplication::applicationDirPath() + "/virtual-headset-servicecall"_L1;
  options.serial = parser.value(serial);
  options.features = parser.value(features);
  options.port = parser.value(port).toUShort();
  options.adbServerPort = parser.value(server).toUShort();
  options.nestedCodePaths = parser.isSet(nested);

  const bool ownsServer = parser.isSet(own) && options.adbServerPort != 0;
  if (ownsServer) guardAdbServer(options.adbServerPort);

  VirtualDevice device(options);
  QString problem = device.prepare();
  if (problem.isEmpty()) {
    problem = seedApps(device, device.packages(), parser.value(apps).toInt(), options.stateDir);
  }
  if (problem.isEmpty()) problem = device.start();
  if (!problem.isEmpty()) return complain(problem);
  std::printf("listening on 127.0.0.1:%u\n", static_cast<unsigned>(device.port()));
  std::fflush(stdout);
  if (parser.isSet(ready)) {
    QSaveFile file(parser.value(ready));
    if (!file.open(QIODevice::WriteOnly)) return complain(u"cannot write to "_s + parser.value(ready));
    file.write(QByteArray::number(device.port()) + '\n');
    file.commit();
  }
  const int code = QCoreApplication::exec();
  if (ownsServer) killAdbServer(options.adbServerPort);
  return code;
}
