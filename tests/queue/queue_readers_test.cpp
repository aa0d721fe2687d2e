#include <QTemporaryDir>
#include <QTest>

#include "queue/bundle.h"
#include "queue/bundle_unpacking.h"
#include "queue/given_paths.h"
#include "sample_package.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

class QueueReadersTest : public QObject {
  Q_OBJECT

  QTemporaryDir m_folder;

  QString path(const QString& name) const { return m_folder.filePath(name); }

 private Q_SLOTS:
  void initTestCase() { qputenv("XDG_CACHE_HOME", QFile::encodeName(path(u"cache"_s))); }

  void given() {
    for (const QString& file :
         {u"more/b 10.apk"_s, u"more/b 9.APK"_s, u"more/deep/c.xapk"_s, u"more/readme.txt"_s,
          u"more/com.x/main.1.com.x.obb"_s, u"a.apk"_s, u"main.1.com.x.obb"_s, u"x.txt"_s})
      QVERIFY(writeFile(path(file), "x"));
    const GivenPaths found = readGiven({path(u"a.apk"_s), path(u"more"_s), path(u"main.1.com.x.obb"_s),
                                        path(u"x.txt"_s), path(u"absent.apk"_s), path(u"a.apk"_s)});
    const auto shortened = [this](QStringList paths) {
      return paths.replaceInStrings(u"\\"_s, u"/"_s).replaceInStrings(m_folder.path() + u'/', QString());
    };
    QCOMPARE(shortened(found.packages),
             (QStringList{u"a.apk"_s, u"more/b 9.APK"_s, u"more/b 10.apk"_s, u"more/deep/c.xapk"_s}));
    QCOMPARE(shortened(found.expansionFiles), QStringList{u"main.1.com.x.obb"_s});
    QCOMPARE(shortened(found.others), (QStringList{u"x.txt"_s, u"absent.apk"_s}));
    QVERIFY(!found.tooMany);
    QCOMPARE(packageOfExpansionFile(u"patch.12.com.example.a.obb"_s), u"com.example.a"_s);
    QCOMPARE(packageOfExpansionFile(u"data.obb"_s), QString());
  }

  /// The whole text of a start is one path wherever that path exists.
  void start() {
    QVERIFY(writeFile(path(u"one two.apk"_s), "x") && writeFile(path(u"one"_s), "x"));
    const QString one = path(u"one"_s);
    const QString two = path(u"two.apk"_s);
    QCOMPARE(severalPaths(one + u" two.apk"_s, {one, u"two.apk"_s}), QStringList());
    QCOMPARE(severalPaths(two + u' ' + one, {two, one}), (QStringList{two, one}));
    QCOMPARE(severalPaths(two + u" x"_s, {two, u"x"_s}),
             QStringList());  // as ever: a path that does not exist
    QCOMPARE(severalPaths(one, {one}), QStringList());
    QCOMPARE(severalPaths({}, {}), QStringList());
  }

  void choices() {
    const HeadsetTraits headset =
        HeadsetTraits::in(u"arm64-v8a,armeabi-v7a\r\n560\r\nzh-Hans-CN\r\nen-US\r\n"_s);
    const QString refused = u"!"_s;
    const std::pair<QString, QString> rows[] = {
        {u"base.apk"_s, u"base.apk"_s},
        {u"com.example.game.apk config.arm64_v8a.apk config.armeabi_v7a.apk config.x86.apk"_s,
         u"com.example.game.apk config.arm64_v8a.apk"_s},
        {u"split_config.armeabi_v7a.apk base.apk split_config.x86.apk"_s,
         u"base.apk split_config.armeabi_v7a.apk"_s},
        {u"base.apk split_config.x86.apk split_config.x86_64.apk"_s, refused},
        {u"base.apk split_config.mdpi.apk split_config.xxhdpi.apk split_config.xxxhdpi.apk"_s,
         u"base.apk split_config.xxxhdpi.apk"_s},
        {u"base.apk split_config.mdpi.apk split_config.xhdpi.apk split_config.hdpi.apk"_s,
         u"base.apk split_config.xhdpi.apk"_s},
        {u"base.apk split_config.zh.apk split_config.de.apk split_config.en.apk split_config.pt_BR.apk"_s,
         u"base.apk split_config.zh.apk split_config.en.apk"_s},
        {u"base.apk split_level1.apk split_level1.config.de.apk split_level1.config.en.apk"_s,
         u"base.apk split_level1.apk split_level1.config.en.apk"_s},
        {u"toc.pb splits/base-master.apk splits/base-arm64_v8a.apk splits/base-x86.apk splits/base-hdpi.apk "
         "splits/pack-master.apk splits/pack-astc.apk splits/pack-etc2.apk standalones/standalone-x86.apk"_s,
         u"splits/base-master.apk splits/base-arm64_v8a.apk splits/base-hdpi.apk splits/pack-master.apk "
         "splits/pack-astc.apk"_s},
        {u"splits/base-master.apk splits/base-master_2.apk"_s, u"splits/base-master_2.apk"_s},
        {u"manifest.json x.apk Android/obb/x/main.1.x.obb"_s, u"x.apk Android/obb/x/main.1.x.obb"_s},
        {u"../base.apk"_s, refused},
        {u"/tmp/base.apk"_s, refused},
        {u"a\\..\\base.apk"_s, refused},
        {u"base.apk a/main.1.obb b/MAIN.1.obb"_s, refused},
        {u"base.apk obb/nul:.obb"_s, refused},
        {u"split_config.zh.apk"_s, refused},
        {u"readme.txt"_s, refused},
    };
    for (const auto& [names, expected] : rows) {
      QList<BundleEntry> entries;
      for (const QString& name : names.split(u' ')) entries << BundleEntry{.name = name, .bytes = 5};
      const BundleChoice choice = chooseParts(entries, headset);
      QStringList chosen;
      for (const auto& part : choice.packages + choice.expansionFiles) chosen << part.entry.name;
      QCOMPARE(choice.problem.english.isEmpty() ? chosen.join(u' ') : refused, expected);
    }
    QVERIFY(!chooseParts({{.name = u"base.apk"_s, .bytes = qint64{65} << 30}}, headset)
                 .problem.english.isEmpty());
  }

  void bundles() {
    const QString file = path(u"game.xapk"_s);
    QVERIFY(writeArchive(file,
                         {{u"manifest.json"_s, R"({"package_name":"x.y","name":"Game 星","version_code":7})"},
                          {u"base.apk"_s, QByteArray(100'000, 'b')},
                          {u"main.1.x.y.obb"_s, "obb"}},
                         true));
    const Bundle bundle = readBundle(file);
    QCOMPARE(bundle.label + bundle.package + bundle.build, u"Game 星x.y7"_s);
    const BundleChoice choice = chooseParts(bundle.entries, {});
    QString folder;
    {
      UnpackedBundle unpacked(file, choice);
      QCOMPARE(QCoro::waitFor(unpacked.unpack()), Bilingual());
      QCOMPARE(readFile(unpacked.packages().value(0)), QByteArray(100'000, 'b'));
      QCOMPARE(readFile(unpacked.expansionFiles().value(0)), QByteArray("obb"));
      folder = QFileInfo(unpacked.packages().value(0)).path();
      // On Windows the folder's place is the user's alone.
      if (QSysInfo::productType() != u"windows"_s)
        QVERIFY(!(QFileInfo(folder).permissions() & ~QFile::Permissions(0x7700)));
    }
    QVERIFY(!QFileInfo::exists(folder));

    // What the directory claims is not trusted.
    BundleChoice tight = choice;
    tight.packages[0].entry.bytes = 99'999;
    QVERIFY(!QCoro::waitFor(UnpackedBundle(file, tight).unpack()).english.isEmpty());
    tight.packages[0].entry.bytes = qint64{1} << 60;
    QVERIFY(!QCoro::waitFor(UnpackedBundle(file, tight).unpack()).english.isEmpty());
    QByteArray damaged = readFile(file);
    damaged[damaged.indexOf("base.apk") + 30] = '\xff';
    QVERIFY(writeFile(file, damaged));
    QVERIFY(!QCoro::waitFor(UnpackedBundle(file, choice).unpack()).english.isEmpty());
    QVERIFY(writeFile(file, "no archive"));
    QVERIFY(!readBundle(file).problem.english.isEmpty());
  }

  void encrypted() {
    const QString file = path(u"locked.apks"_s);
    QVERIFY(writeArchive(file, {{u"base.apk"_s, "content"}}));
    // Only marked so, at the entry and in the directory: not every libzip can encrypt.
    QByteArray marked = readFile(file);
    marked[marked.indexOf("PK\3\4") + 6] |= '\1';
    marked[marked.indexOf("PK\1\2") + 8] |= '\1';
    QVERIFY(writeFile(file, marked));
    const QString told = chooseParts(readBundle(file).entries, {}).problem.english;
    QVERIFY2(told.contains(u"encrypted"_s), qPrintable(told));
  }
};

QTEST_GUILESS_MAIN(QueueReadersTest)
#include "queue_readers_test.moc"
