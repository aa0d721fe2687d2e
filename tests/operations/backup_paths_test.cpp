#include "operations/backup_paths.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace orvanta;

class BackupPathsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void names() {
    QCOMPARE(withApkEnding(u"game.APK"_s), u"game.APK"_s);
    QCOMPARE(withApkEnding(u"game.zip"_s), u"game.zip.apk"_s);
    const QString name =
        withEnding(u"/x/"_s + QString(84, u'游') + u".aé"_s, u".partial12"_s, HostStyle::posix());
    QVERIFY(name.startsWith(u"/x/游"_s) && name.endsWith(u"游.partial12"_s));
    QVERIFY(name.toUtf8().size() <= 255 + 3);
    const QString emoji = withEnding(u"🎮"_s.repeated(63) + u"abc"_s, u".old"_s, HostStyle::posix());
    QCOMPARE(emoji, u"🎮"_s.repeated(62) + u".old"_s);
  }

  void restoreFolders() {
    const std::pair<QString, QString> chosen[] = {
        {u"C:\\B"_s, u"C:\\B"_s},  // the parent
        {u"C:\\B\\some.app"_s, u"C:\\B"_s},
        {u"C:\\my some.app"_s, u"C:\\my some.app"_s},
        {u"C:\\B\\some.app-old"_s, u"C:\\B-old"_s},
        {u"C:\\B\\Some.app"_s, u"C:\\B\\Some.app"_s},
    };
    for (const auto& [folder, expected] : chosen)
      QCOMPARE(restoreFolder(folder, u"some.app"_s, HostStyle::windows()), expected);
  }
};

QTEST_MAIN(BackupPathsTest)
#include "backup_paths_test.moc"
