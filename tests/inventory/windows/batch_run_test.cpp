#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include "inventory/parser.h"
#include "inventory/script.h"
#include "platform/child_process.h"
#include "platform/script_place.h"
#include "support/stand_in.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

/// The batch file as the command processor runs it. That of Wine leaves carets in and does not replace text
/// in a variable, so carets, the label and the path on the device are not compared.
class BatchRunTest : public QObject {
  Q_OBJECT

  static QStringList run(const QString& folder) {
    const ScriptPlace script(batchInventoryScript(folder));
    const auto child = ChildProcess::create();
    QByteArray output;
    connect(child.get(), &ChildProcess::block, child.get(),
            [&output](const QByteArray& bytes) { output += bytes; });
    QSignalSpy end(child.get(), &ChildProcess::finished);
    if (child->start(script.commandLine()) || !end.wait(60'000)) return {u"did not run"_s};
    return QString::fromUtf8(output).split(u"\r\n"_s);
  }

 private Q_SLOTS:
  void callsAndStream() {
    StandIn tools;
    tools.answer(u"push *"_s, u"1 file pushed, 0 skipped.\n"_s);
    tools.answer(u"shell pm list *"_s, u"com.small 0.2 0.2 0.0 0.0\ncom.big 7.0 5.0 2.0 0.0\n"_s);
    tools.answer(u"shell pm path *"_s, u"package:/data/app/x==/base.apk\n"_s);
    tools.answer(u"shell /data/*"_s, u"package: name='x'\napplication-label:'Big'\n"_s);
    tools.answer(u"shell dumpsys *"_s, u"versionCode: 5 minSdk: 23\nversionName: 1.0\n"_s);
    const QString folder = QDir::toNativeSeparators(QCoreApplication::applicationDirPath());

    QStringList tagged;
    for (const QString& line : run(folder)) {
      if (line.mid(2).startsWith(u"3x: "_s)) tagged << line;
    }
    QCOMPARE(tagged, (QStringList{u"IP3x: com.small "_s, u"VC3x: versionCode: 5 minSdk: 23"_s,
                                  u"VC3x: versionName: 1.0"_s, u"TO3x: 0.2"_s, u"AP3x: 0.2"_s, u"OB3x: 0.0"_s,
                                  u"AD3x: 0.0"_s, u"IP3x: com.big "_s, u"VC3x: versionCode: 5 minSdk: 23"_s,
                                  u"VC3x: versionName: 1.0"_s, u"TO3x: 7.0"_s, u"AP3x: 5.0"_s, u"OB3x: 2.0"_s,
                                  u"AD3x: 0.0"_s}));

    const QString adb = u"\"%1\\adb.exe\"  "_s.arg(folder);
    const QString badging = adb + u"shell /data/local/tmp/aapt-arm-pie d badging "_s;
    QStringList expected{adb + u"push \"%1\\aapt-arm-pie\" /data/local/tmp"_s.arg(folder),
                         adb + u"shell chmod 0755 /data/local/tmp/aapt-arm-pie"_s, adb + devicePipeline};
    for (const QString& name : {u"com.small"_s, u"com.big"_s}) {
      expected << adb + u"shell \"pm path %1\""_s.arg(name) << badging << adb + dumpsysPipeline.arg(name);
    }
    QStringList lines = tools.lines();
    for (QString& line : lines) {
      line.remove(u'^');
      if (line.startsWith(badging)) line = badging;
    }
    QCOMPARE(lines, expected);
  }

 private:
  static const QString devicePipeline;
  static const QString dumpsysPipeline;
};

const QString BatchRunTest::devicePipeline =
    u"shell \"pm list package -f -3 -u | awk -F':' '{print $2}' | awk -F'==/base.apk=|null=' '{"
    "apksize = \\\"\\\"; cmd = \\\"du \\\" $1 \\\"==/base.apk 2\\76/dev/null \\174 cut -f 1 \\174 bc\\\"; "
    "cmd | getline apksize; close(cmd); "
    "obbsize = \\\"\\\"; cmd = \\\"du -s /sdcard/Android/obb/\\\" $2 \\\" 2\\76/dev/null \\174 cut -f 1 "
    "\\174 bc\\\"; "
    "cmd | getline obbsize; close(cmd); "
    "datasize = \\\"\\\"; cmd = \\\"du -s /sdcard/Android/data/\\\" $2 \\\" 2\\76/dev/null \\174 cut -f 1 "
    "\\174 bc\\\"; "
    "cmd | getline datasize; close(cmd); "
    "printf($2 \\\" %.1f %.1f %.1f %.1f\\n\\\", ((apksize>4?apksize:0)/1024)+((obbsize>4?obbsize:0)/1024)+"
    "((datasize>4?datasize:0)/1024), (apksize>4?apksize:0)/1024,(obbsize>4?obbsize:0)/1024,"
    "(datasize>4?datasize:0)/1024) }' | sort -nk2\""_s;
const QString BatchRunTest::dumpsysPipeline =
    u"shell \"dumpsys package %1 | grep -e \\\"versionName\\\" -e \\\"versionCode\\\" | awk "
    "'{$1=$1;gsub(/=/,\\\": \\\");};1'\""_s;

QTEST_GUILESS_MAIN(BatchRunTest)
#include "batch_run_test.moc"
