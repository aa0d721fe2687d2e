#include "install/expansion_files.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace orvanta;

class ExpansionFilesTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void scan() {
    const struct {
      bool packageFolder;
      QStringList files;
      bool found;
      QStringList paths;
    } rows[] = {
        {true, {}, true, {}},  // a reason to show the list, empty as it is
        {true,
         {u"readme.txt"_s, u"main.obb"_s},
         true,
         {u"C:\\g\\a.b\\readme.txt"_s, u"C:\\g\\a.b\\main.obb"_s}},
        {false, {u"x.zip"_s, u"y.pak"_s, u"z.bundle"_s}, false, {}},
        {false,
         {u"MAIN.OBB"_s, u"x.zip"_s, u"game.apk"_s, u"z.bundle"_s},
         true,
         {u"C:\\g\\\\MAIN.OBB"_s, u"C:\\g\\\\x.zip"_s, u"C:\\g\\\\z.bundle"_s}},
        {false, {u"noobb"_s}, true, {u"C:\\g\\\\noobb"_s}},
    };
    for (const auto& [packageFolder, files, found, paths] : rows) {
      ExpansionFileList module;
      module.ObbFileCount = 7;
      QCOMPARE(
          listExpansionFiles({u"C:\\g\\"_s, u"a.b"_s, packageFolder, files}, HostStyle::windows(), module),
          found);
      QStringList listed;
      for (size_t i = 1; i <= size_t(module.ObbFileCount); ++i) {
        listed << module.ObbFilePaths[i];
        QVERIFY(listed.constLast().endsWith(u'\\' + module.ObbFileNames[i]));
      }
      QCOMPARE(listed, paths);
    }
  }

  void moreThanTheListHolds() {
    QStringList files;
    for (int i = 1; i <= 300; ++i) files << u"%1.obb"_s.arg(i);
    ExpansionFileList module;
    listExpansionFiles({u"/g/"_s, u"a.b"_s, true, files}, HostStyle::posix(), module);
    QCOMPARE(module.ObbFileCount, 300);
    QCOMPARE(module.ObbFileNames[255], u"255.obb"_s);
    // One too many would land in the first place of the next list.
    QVERIFY(module.ObbFileNames[0].isEmpty() && module.ObbFilePaths[0].isEmpty());
  }
};

QTEST_GUILESS_MAIN(ExpansionFilesTest)
#include "expansion_files_test.moc"
