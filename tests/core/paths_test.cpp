#include "core/paths.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <filesystem>
#include <system_error>

using namespace Qt::StringLiterals;
using namespace orvanta;

class PathsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void pathParts() {
    const struct {
      const HostStyle& style;
      QString path;
      QString parent;
      QString base;
    } rows[] = {
        {HostStyle::windows(), u"C:\\a b\\x.apk"_s, u"C:\\a b\\"_s, u"x.apk"_s},
        {HostStyle::windows(), u"C:/a/x.apk"_s, u""_s, u"x.apk"_s},
        {HostStyle::windows(), u"C:\\a/x.apk"_s, u"C:\\"_s, u"x.apk"_s},
        {HostStyle::windows(), u"C:\\a\\"_s, u"C:\\a\\"_s, u""_s},
        {HostStyle::posix(), u"/a b/x\\y.apk"_s, u"/a b/"_s, u"x\\y.apk"_s},
        {HostStyle::posix(), u"x.apk"_s, u""_s, u"x.apk"_s},
    };
    for (const auto& row : rows) {
      QCOMPARE(ParentPath(row.path, row.style), row.parent);
      QCOMPARE(BaseName(row.path, row.style), row.base);
    }
  }

  void filesOfAFolder() {
    QTemporaryDir folder;
    for (const char* name : {"main.10.obb", "main.2.obb", ".hidden", "B.txt", "a.txt"})
      QVERIFY(QFile(folder.filePath(QString::fromUtf8(name))).open(QIODevice::WriteOnly));
    QDir(folder.path()).mkdir(u"sub.obb"_s);
    std::error_code refused;  // on Windows not everybody may make links
    const std::filesystem::path place = folder.path().toStdU16String();
    std::filesystem::create_symlink("nowhere", place / "broken.obb", refused);
    std::filesystem::create_symlink("a.txt", place / "link.obb", refused);
    QStringList wanted{u".hidden"_s,  u"a.txt"_s,      u"B.txt"_s,
                       u"link.obb"_s, u"main.2.obb"_s, u"main.10.obb"_s};
    if (refused) wanted.removeOne(u"link.obb"_s);
    QCOMPARE(filesDirectlyIn(folder.path()), wanted);
    QCOMPARE(filesDirectlyIn(folder.filePath(u"missing"_s)), QStringList());
    QCOMPARE(filesDirectlyIn(QString()), QStringList());
    QVERIFY(FolderExists(folder.path()));
    QVERIFY(!FolderExists(folder.filePath(u"a.txt"_s)) && !FolderExists(QString()));
  }
};

QTEST_GUILESS_MAIN(PathsTest)
#include "paths_test.moc"
