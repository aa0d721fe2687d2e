#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "platform/file_moves.h"
#include "platform/file_sync.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

class FilesTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aRenameNeverReplaces() {
    QTemporaryDir folder;
    const auto path = [&folder](const QString& name) { return folder.filePath(name); };
    QVERIFY(QFile(path(u"a b.apk"_s)).open(QIODevice::WriteOnly));
    QVERIFY(QFile(path(u"taken"_s)).open(QIODevice::WriteOnly));
    QVERIFY(QDir(folder.path()).mkdir(u"folder"_s));
    const auto names = [&folder] { return QDir(folder.path()).entryList(QDir::AllEntries | QDir::System); };
    const QStringList before = names();
    for (const QString& taken : {u"taken"_s, u"folder"_s, u"a b.apk"_s, u"none/x"_s}) {
      QVERIFY2(!renameNoReplace(path(u"a b.apk"_s), path(taken)), qPrintable(taken));
    }
    QVERIFY(!renameNoReplace(path(u"nothing"_s), path(u"new"_s)));
    QCOMPARE(names(), before);
    QVERIFY(renameNoReplace(path(u"a b.apk"_s), path(u"a b.zip"_s)));
    QVERIFY(names().contains(u"a b.zip"_s) && names().size() == before.size());
  }

  void aCopyComesToTheDisk() {
    QTemporaryDir folder;
    QVERIFY(QFile(folder.filePath(u"a"_s)).open(QIODevice::WriteOnly));
    for (const QString& path : {folder.filePath(u"a"_s), folder.path()}) QVERIFY(syncToDisk(path));
    QVERIFY(!syncToDisk(folder.filePath(u"none"_s)));
  }

  void longPaths() {
    QTemporaryDir folder;
    const QString deep = folder.filePath((QString(80, u'包') + u'/').repeated(4));
    QVERIFY(QDir().mkpath(deep));
    QVERIFY(QFile(deep + u"a.apk"_s).open(QIODevice::WriteOnly));
    QVERIFY(renameNoReplace(deep + u"../"_s + QString(80, u'包') + u"//a.apk"_s, deep + u"a.zip"_s));
    QVERIFY(QFile::exists(deep + u"a.zip"_s) && !QFile::exists(deep + u"a.apk"_s));
  }
};

QTEST_GUILESS_MAIN(FilesTest)
#include "files_test.moc"
