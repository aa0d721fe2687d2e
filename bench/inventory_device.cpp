// The inventory of a virtual headset, gathered by the one script and in the shape of the batch file, which
// makes three calls for each app. Arguments: the numbers of apps, 50 and 200 unless given; 1000 takes
// minutes, most of them the making of the apps and the batch shape.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>

#include "inventory/parser.h"
#include "inventory/script.h"
#include "testing/virtual_headset.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

constexpr double leastGain = 5;

void write(const QString& path, const QString& text) {
  QFile file(path);
  if (file.open(QIODevice::WriteOnly)) file.write(text.toUtf8());
  file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QString batchShape() {
  return uR"sh(adb push "$0/aapt-arm-pie" /data/local/tmp
adb shell chmod 0755 /data/local/tmp/aapt-arm-pie
adb shell 'pm list packages -f -3 -u | while read -r line; do
  name=${line##*=} path=${line#package:} path=${path%=*}
  for part in "$path" "/sdcard/Android/obb/$name" "/sdcard/Android/data/$name"; do
    du -s "$part" 2>/dev/null </dev/null | cut -f 1
  done >/dev/null
  echo "$name"
done' | while read -r name; do
  echo "IP3x: $name "
  path=$(adb shell "pm path $name" </dev/null | tail -n 1)
  adb shell "/data/local/tmp/aapt-arm-pie d badging ${path#package:}" </dev/null | grep application-label:
  adb shell "dumpsys package $name | grep -e versionName -e versionCode | awk '{\$1=\$1;gsub(/=/,\": \");};1'" </dev/null |
    sed 's/^/VC3x: /'
done)sh"_s;
}

struct Run {
  qint64 milliseconds;
  qsizetype apps;
  qsizetype services;
};

Run timed(test::VirtualHeadset& headset, const QStringList& words) {
  headset.clearLog();
  QElapsedTimer timer;
  timer.start();
  QProcess shell;
  shell.start(u"/bin/sh"_s, words);
  shell.waitForFinished(-1);
  const qint64 milliseconds = timer.elapsed();
  const QString output = QString::fromUtf8(shell.readAllStandardOutput());
  return {milliseconds, readInventory(output).apps.size(), headset.services().size()};
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  QTemporaryDir tools;
  write(tools.filePath(u"aapt-arm-pie"_s), u"#!/system/bin/sh\necho \"application-label:'$3'\"\n"_s);
  write(tools.filePath(u"adb"_s), u"#!/bin/sh\nexec adb \"$@\"\n"_s);
  write(tools.filePath(u"script.sh"_s), shellInventoryScript(tools.path()));
  QStringList counts = QCoreApplication::arguments().mid(1);
  if (counts.isEmpty()) counts = {u"50"_s, u"200"_s};
  bool fast = true;
  qsizetype services = -1;
  for (const QString& count : counts) {
    test::VirtualHeadset headset;
    // A thousand apps take longer to make than a start is given; each goes on where the last one ended.
    QString failure = u"-"_s;
    for (int attempt = 0; attempt < 20 && !failure.isEmpty(); ++attempt)
      failure = headset.start({.apps = count.toInt()});
    if (!failure.isEmpty()) {
      std::fprintf(stderr, "%s\n", qPrintable(failure));
      return 2;
    }
    headset.setFault(u"latency_ms"_s, u"20"_s);
    const Run ours = timed(headset, {tools.filePath(u"script.sh"_s)});
    const Run theirs = timed(headset, {u"-c"_s, batchShape(), tools.path()});
    const double gain = static_cast<double>(theirs.milliseconds) / static_cast<double>(ours.milliseconds);
    std::printf(
        "%s apps: %lld ms, %lld services; in the batch file's shape %lld ms, %lld services: %.1f times\n",
        qPrintable(count), static_cast<long long>(ours.milliseconds), static_cast<long long>(ours.services),
        static_cast<long long>(theirs.milliseconds), static_cast<long long>(theirs.services), gain);
    fast = fast && ours.apps == theirs.apps && (services < 0 || services == ours.services) &&
           (count.toInt() < 200 || gain >= leastGain);
    services = ours.services;
  }
  return fast ? 0 : 1;
}
