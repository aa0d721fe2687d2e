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
  void fields() {
    const std::pair<QString, QString> rows[] = {
        // the output, then fields 1, 2, 3, 4, 5, 9
        {u"package: name='a' versionCode='1' versionName='2'\r\n"_s, u"a|1|2|||"_s},
        // a label in one language replaces the default
        {u"application-label:'Default'\r\napplication-label-zh-CN:'应用'\r\n"_s, u"|||应用||"_s},
        // an empty icon keeps the one before
        {u"application: label='L' icon='res/a.png'\r\nlaunchable-activity: name='m'  label='' icon=''\r\n"_s,
         u"|||||res/a.png"_s},
        {u"package: name='  a b '"_s, u"a b|||||"_s},
        {u"application-label:'Bob's game'\r\n"_s, u"|||Bob||"_s},
        // a value that holds a key counts as one
        {u"package: name='my.package' versionCode='7'"_s, u"versionCode=|7||||"_s},
        {u"uses-feature: name='android.hardware.vr.headtracking'\r\n"_s, u"||||Yes|"_s},
        // a key on the last piece has no value
        {u"package: name='a' versionCode="_s, u"a|||||"_s},
        {u"compileSdkVersion='30' platformBuildVersionCode='30' platformBuildVersionName='11'"_s, u"|||||"_s},
    };
    for (const auto& [output, expected] : rows) {
      Fields fields;
      int count = 0;
      readBadging(output, fields, count);
      const QStringList found{fields[1], fields[2], fields[3], fields[4], fields[5], fields[9]};
      QCOMPARE(found.join(u'|'), expected);
      QCOMPARE(count, 0);
    }
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
