#include "apk/badging.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {
using Fields = std::array<QString, 51>;
}

class BadgingTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void line() {
    const Host windows{HostStyle::windows(), u"C:\\My Tools"_s};
    QCOMPARE(badgingLine(windows, u"C:\\games\\a b.apk"_s),
             u"\"C:\\My Tools\\aapt.exe\" d badging \"C:\\games\\a b.apk\""_s);
    const Host posix{HostStyle::posix(), u"/opt/orvanta"_s};
    QCOMPARE(badgingLine(posix, u"/games/a b.apk"_s),
             u"\"/opt/orvanta/aapt\" d badging \"/games/a b.apk\""_s);
  }

  void fields_data() {
    QTest::addColumn<QString>("output");
    QTest::addColumn<QStringList>("expected");  // fields 1, 2, 3, 4, 5, 9
    const auto row = [](const char* name, const QString& output, const QStringList& expected) {
      QTest::newRow(name) << output << expected;
    };
    const QString none;
    row("empty", none, {none, none, none, none, none, none});
    row("one line", u"package: name='a' versionCode='1' versionName='2'\r\n"_s,
        {u"a"_s, u"1"_s, u"2"_s, none, none, none});
    row("a label in one language replaces the default",
        u"application-label:'Default'\r\napplication-label-zh-CN:'应用'\r\n"_s,
        {none, none, none, u"应用"_s, none, none});
    row("an empty icon keeps the one before",
        u"application: label='L' icon='res/a.png'\r\nlaunchable-activity: name='m'  label='' icon=''\r\n"_s,
        {none, none, none, none, none, u"res/a.png"_s});
    row("values are cut of blanks", u"package: name='  a b '"_s, {u"a b"_s, none, none, none, none, none});
    row("a label with an apostrophe is cut there", u"application-label:'Bob's game'\r\n"_s,
        {none, none, none, u"Bob"_s, none, none});
    row("a value that holds a key counts as one", u"package: name='my.package' versionCode='7'"_s,
        {u"versionCode="_s, u"7"_s, none, none, none, none});
    row("the mark of a feature", u"uses-feature: name='android.hardware.vr.headtracking'\r\n"_s,
        {none, none, none, none, u"Yes"_s, none});
    row("a key on the last piece has no value", u"package: name='a' versionCode="_s,
        {u"a"_s, none, none, none, none, none});
    row("other cases of the keys do not count",
        u"compileSdkVersion='30' platformBuildVersionCode='30' platformBuildVersionName='11'"_s,
        {none, none, none, none, none, none});
    row("an error text", u"ERROR: dump failed because no AndroidManifest.xml found\r\n"_s,
        {none, none, none, none, none, none});
  }
  void fields() {
    QFETCH(QString, output);
    Fields fields;
    int count = 0;
    readBadging(output, fields, count);
    const QStringList found{fields[1], fields[2], fields[3], fields[4], fields[5], fields[9]};
    QTEST(found, "expected");
    QCOMPARE(count, 0);
  }

  void permissions() {
    QString output;
    for (int i = 1; i <= 41; ++i) output += u"uses-permission: name='p%1'\r\n"_s.arg(i);
    output += u"uses-permission"_s;  // the last piece: counted, and nothing to store
    Fields fields;
    int count = 0;
    readBadging(output, fields, count);
    QCOMPARE(count, 42);
    QCOMPARE(fields[11], u"p1"_s);
    QCOMPARE(fields[50], u"p40"_s);
    QVERIFY(fields[10].isEmpty());
  }
};

QTEST_GUILESS_MAIN(BadgingTest)
#include "badging_test.moc"
