#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include "platform/file_moves.h"
#include "platform/store_paths.h"

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
    // Tests for existence follow a link and find nothing behind this one.
    QVERIFY(QFile::link(path(u"nothing"_s), path(u"dangling"_s)));
    const QString before = QDir(folder.path()).entryList(QDir::AllEntries | QDir::System).join(u'\n');
    for (const QString& taken : {u"taken"_s, u"folder"_s, u"dangling"_s, u"a b.apk"_s, u"none/x"_s}) {
      QVERIFY2(!renameNoReplace(path(u"a b.apk"_s), path(taken)), qPrintable(taken));
    }
    QVERIFY(!renameNoReplace(path(u"nothing"_s), path(u"new"_s)));
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::System).join(u'\n'), before);
    QVERIFY(renameNoReplace(path(u"a b.apk"_s), path(u"a b.zip"_s)));
  }

  void theIconFolderIsFreshAndPrivate() {
    QTemporaryDir cache;
    qputenv("XDG_CACHE_HOME", QFile::encodeName(cache.filePath(u"not made yet"_s)));
    const QString one = makeIconFolder();
    const QString other = makeIconFolder();
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(one).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777, 0700U);
    QVERIFY(other.startsWith(cache.path()) && one != other);
    leaveIconFolder(one);
    QVERIFY(!QFileInfo::exists(one) && QFileInfo::exists(other));
    qputenv("XDG_CACHE_HOME", "/dev/null/x");
    QVERIFY(makeIconFolder().isEmpty());
  }
};

QTEST_GUILESS_MAIN(FilesTest)
#include "files_test.moc"
