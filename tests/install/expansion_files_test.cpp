#include "install/expansion_files.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace orvanta;

class ExpansionFilesTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void scan_data() {
    QTest::addColumn<bool>("packageFolder");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<bool>("found");
    QTest::addColumn<QStringList>("paths");
    const QStringList none;
    QTest::newRow("an empty folder is a reason without a list") << true << none << true << none;
    QTest::newRow("every file of the folder")
        << true << QStringList{u"readme.txt"_s, u"main.obb"_s} << true
        << QStringList{u"C:\\g\\a.b\\readme.txt"_s, u"C:\\g\\a.b\\main.obb"_s};
    QTest::newRow("companions need an obb")
        << false << QStringList{u"x.zip"_s, u"y.pak"_s, u"z.bundle"_s} << false << none;
    QTest::newRow("companions beside one")
        << false << QStringList{u"MAIN.OBB"_s, u"x.zip"_s, u"game.apk"_s, u"z.bundle"_s} << true
        << QStringList{u"C:\\g\\\\MAIN.OBB"_s, u"C:\\g\\\\x.zip"_s, u"C:\\g\\\\z.bundle"_s};
    QTest::newRow("no dot is asked for")
        << false << QStringList{u"noobb"_s} << true << QStringList{u"C:\\g\\\\noobb"_s};
  }
  void scan() {
    QFETCH(bool, packageFolder);
    QFETCH(QStringList, files);
    const PackageSurroundings surroundings{u"C:\\g\\"_s, u"a.b"_s, packageFolder, files};
    Module1 module;
    module.ObbFileCount = 7;
    QTEST(listExpansionFiles(surroundings, HostStyle::windows(), module), "found");
    QStringList listed;
    for (int i = 1; i <= module.ObbFileCount; ++i) {
      listed << module.ObbFilePaths[static_cast<size_t>(i)];
      QVERIFY(listed.constLast().endsWith(u'\\' + module.ObbFileNames[static_cast<size_t>(i)]));
    }
    QTEST(listed, "paths");
  }

  void moreThanTheListHolds() {
    QStringList files;
    for (int i = 1; i <= 300; ++i) files << u"%1.obb"_s.arg(i);
    Module1 module;
    listExpansionFiles({u"/g/"_s, u"a.b"_s, true, files}, HostStyle::posix(), module);
    QCOMPARE(module.ObbFileCount, 300);
    QCOMPARE(module.ObbFileNames[255], u"255.obb"_s);
    QVERIFY(module.ObbFileNames[0].isEmpty());
  }

  void presence() {
    const QString listing =
        u"/sdcard/Android/obb/a.b:\r\ntotal 8\r\n-rw-rw---- 1 root sdcard_rw 5 2021-01-01 00:00 Main.1.a.b.obb\r\n"_s;
    QVERIFY(isOnDevice(u"main.1.A.B.obb"_s, listing));
    QVERIFY2(isOnDevice(u"1.a.b.obb"_s, listing), "a part of a longer name is enough");
    QVERIFY(!isOnDevice(u"patch.1.a.b.obb"_s, listing));
    QVERIFY(!isOnDevice(u"main.1.a.b.obb"_s, QString()));
  }
};

QTEST_GUILESS_MAIN(ExpansionFilesTest)
#include "expansion_files_test.moc"
