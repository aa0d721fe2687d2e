#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include "inventory/columns.h"
#include "inventory/parser.h"
#include "inventory/script.h"
#include "platform/child_process.h"
#include "platform/script_place.h"
#include "support/stand_in.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

/// The batch file as the command processor runs it. Wine's leaves carets in and does not replace text in a
/// variable, so that the label, the path on the device and the ends of the long lines are not compared.
class BatchRunTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void callsAndStream() {
    StandIn tools;
    tools.answer(u"push *"_s, u"1 file pushed, 0 skipped.\n"_s);
    tools.answer(u"shell pm list *"_s, u"com.small 0.2 0.3 0.4 0.5\ncom.big 7.0 5.0 2.0 0.0\n"_s);
    tools.answer(u"shell pm path *"_s, u"package:/data/app/x==/base.apk\n"_s);
    tools.answer(u"shell /data/*"_s, u"package: name='x'\napplication-label:'Big'\n"_s);
    tools.answer(u"shell dumpsys *"_s, u"versionCode: 5 minSdk: 23\nversionName: 1.0\n"_s);
    const QString folder = QDir::toNativeSeparators(QCoreApplication::applicationDirPath());

    const ScriptPlace script(batchInventoryScript(folder));
    const auto child = ChildProcess::create();
    QByteArray output;
    connect(child.get(), &ChildProcess::block, this, [&output](const QByteArray& bytes) { output += bytes; });
    QSignalSpy end(child.get(), &ChildProcess::finished);
    QVERIFY(!child->start(script.commandLine()) && end.wait(60'000));

    const QString text = QString::fromUtf8(output);
    const Inventory read = readInventory(text);
    QCOMPARE(read.apps.size(), 2);
    for (const auto& [row, cells] :
         {std::pair(0, u"com.small|1.0|5|0.2|0.3|0.4|0.5"_s), {1, u"com.big|1.0|5|7.0|5.0|2.0|0.0"_s}}) {
      QStringList found;
      for (int col = ColPackage; col <= ColDataSpace; ++col)
        found << read.apps[row][col].trimmed().toString();
      QCOMPARE(found.join(u'|'), cells);
    }
    QVERIFY(!read.cut);

    const QString adb = u"\"%1\\adb.exe\"  "_s.arg(folder);
    QStringList expected{adb + u"push \"%1\\aapt-arm-pie\" /data/local/tmp"_s.arg(folder),
                         adb + u"shell chmod 0755 /data/local/tmp/aapt-arm-pie"_s,
                         adb + u"shell \"pm list package -f -3 -u "_s};
    for (const QString& name : {u"com.small"_s, u"com.big"_s}) {
      expected << adb + u"shell \"pm path %1\""_s.arg(name)
               << adb + u"shell /data/local/tmp/aapt-arm-pie d badging "_s
               << adb + u"shell \"dumpsys package %1 "_s.arg(name);
    }
    const QStringList lines = tools.lines();
    QCOMPARE(lines.size(), expected.size());
    for (qsizetype i = 0; i < lines.size(); ++i) QCOMPARE(lines[i].left(expected[i].size()), expected[i]);
  }
};

QTEST_GUILESS_MAIN(BatchRunTest)
#include "batch_run_test.moc"
