#include "core/report_text.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace orvanta;

class ReportTextTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void whatIsPrivateStaysOut_data() {
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("homes");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("told");
    const QStringList anna{u"anna"_s};
    const QStringList home{u"/home/anna/"_s};
    QTest::newRow("paths")
        << anna << home << u"push \"/home/anna/a b.apk\" /home/anna, file:///home/anna/x %2Fhome%2Fanna%2Fx"_s
        << u"push \"~/a b.apk\" ~, file:~/x ~%2Fx"_s;
    QTest::newRow("another's") << anna << home << u"/home/annabel/x /home/joanna/x annabel"_s
                               << u"/home/annabel/x /home/joanna/x annabel"_s;
    QTest::newRow("name") << anna << home << u"Anna@pc: /media/anna/Disk, 由anna写入, ?u=anna&v%3Danna"_s
                          << u"[user]@pc: /media/[user]/Disk, 由[user]写入, ?u=[user]&v%3D[user]"_s;
    const QStringList windowsHome{u"C:/Users/Anna Müller"_s};
    QTest::newRow("Windows")
        << QStringList{u"Anna Müller"_s} << windowsHome
        << u"C:\\Users\\Anna Müller\\a c:/users/anna müller/b C:\\\\Users\\\\Anna Müller\\\\c "
           "C%3A/Users/Anna%20M%C3%BCller/d C:\\Users\\ANNAMÜ~1 D:\\Müller"_s
        << u"~\\a ~/b ~\\\\c ~/d C:\\Users\\[user] D:\\[user]"_s;
    QTest::newRow("Chinese") << QStringList{u"张三"_s} << QStringList{u"C:\\Users\\张三"_s}
                             << u"C:\\Users\\张三\\x C:\\Users\\张三AppData 作者张三。"_s
                             << u"~\\x ~AppData 作者[user]。"_s;
    QTest::newRow("one letter") << QStringList{u"a"_s} << QStringList{u"/home/a"_s}
                                << u"a device: a, /home/a/b, /data/app/a/c, /home/abc /media/a"_s
                                << u"a device: a, ~/b, /data/app/a/c, /home/abc /media/[user]"_s;
    QTest::newRow("an ordinary word") << QStringList{u"user"_s} << QStringList{u"/home/user"_s}
                                      << u"user in plugdev, /home/user/x, D:\\Users\\user"_s
                                      << u"user in plugdev, ~/x, D:\\Users\\[user]"_s;
    for (const QString& nobody : {u""_s, u"/"_s, u"//"_s, u"C:\\"_s})
      QTest::addRow("home '%s'", qPrintable(nobody)) << QStringList{u""_s, u" "_s} << QStringList{nobody}
                                                     << u"/a/b C:\\x (a) ~"_s << u"/a/b C:\\x (a) ~"_s;
    QTest::newRow("signs that patterns act on")
        << QStringList{u"a.b+c"_s} << QStringList{u"/home/a.b+c"_s} << u"/home/a.b+c/x /home/aXbbc by a.b+c"_s
        << u"~/x /home/aXbbc by [user]"_s;
  }
  void whatIsPrivateStaysOut() {
    QFETCH(QStringList, names);
    QFETCH(QStringList, homes);
    QFETCH(QString, text);
    QFETCH(QString, told);
    QCOMPARE(reportText({{u"Console"_s, text}}, {names, homes, {}}), u"== Console ==\n"_s + told + u'\n');
  }

  void serialsAreMarked() {
    const auto told = [](const QString& text) {
      return reportText({{u"A"_s, text}, {u"B"_s, u"\r\n"_s}}, {{}, {}, {u"1WMHH8325K1147"_s, u"a"_s}});
    };
    const QString once = told(u"1WMHH8325K1147"_s).section(u'\n', 1, 1);
    QVERIFY(QRegularExpression(u"^\\[serial-[0-9a-f]{4}\\]$"_s).match(once).hasMatch());
    QCOMPARE(told(u"-s 1WMHH8325K1147 a 11WMHH8325K11470\r\n"_s),
             u"== A ==\n-s "_s + once + u" a 11WMHH8325K11470\n\n== B ==\n\n"_s);
    // One that only a list of devices tells, and an address that is given without its port elsewhere.
    const QString listed = told(u"to 10.0.0.7, 2G0YC1\r\n2G0YC1\toffline\r\n10.0.0.7:5555\tdevice\r\n"_s);
    QVERIFY2(!listed.contains(u"2G0YC1"_s) && !listed.contains(u"10.0.0.7"_s), qPrintable(listed));
    QCOMPARE(listed.section(u' ', 3, 3).left(13), listed.section(u'\n', 3, 3).left(13));
  }

  void longConsoles() {
    QString text = u"/"_s.repeated(1'000'000) + u"/home/"_s.repeated(100'000);
    for (int i = 0; i < 20'000; ++i) text += u"\nserial%1\tdevice"_s.arg(i);
    QVERIFY(reportText({{u"A"_s, text}}, {{u"anna"_s}, {u"/home/anna"_s}, {}}).size() > 1'000'000);
  }
};

QTEST_APPLESS_MAIN(ReportTextTest)
#include "report_text_test.moc"
