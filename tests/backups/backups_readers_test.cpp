#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>

#include "adb/app_state.h"
#include "backups/app_backup.h"
#include "backups/backup_names.h"
#include "backups/copy_note.h"
#include "backups/pull_plan.h"
#include "backups/saved_app.h"
#include "platform/store_paths.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

QByteArray entry(const QByteArray& path, const QByteArray& size = "5") {
  return R"({"path": ")" + path + R"(", "size": )" + size + R"(, "sha256": ")" + QByteArray(64, 'a') + "\"}";
}

QByteArray manifest(const QByteArray& files, const QByteArray& format = "1",
                    const QByteArray& package = "\"com.a\"") {
  return "{\"format\": " + format + ", \"package\": " + package + ", \"files\": [" + files + "]}";
}

}  // namespace

class BackupsReadersTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void manifestsThatAreRefused() {
    const QByteArray good = manifest(entry("apk/base.apk") + "," + entry("obb/com.a/x"));
    const std::pair<QByteArray, const char*> cases[] = {
        {good, ""},
        {manifest(entry("obb/com.a/日 'a' 🎮", "1099511627776")), ""},
        {manifest(entry("obb/com.a/x", "1099511627777")), "size"},
        {good.chopped(2), "cut off"},
        {"", "cut off"},
        {"[1]", "cut off"},
        {manifest(entry("apk/a"), "2"), "later version"},
        {manifest(entry("apk/a"), "\"1\""), "format"},
        {manifest(entry("apk/a"), "1", "7"), "package"},
        {manifest(entry("apk/a"), "1", "\"a;b\""), "package"},
        {R"({"format": 1, "package": "com.a", "files": {}})", "files"},
        {manifest("7"), "path"},
        {manifest(entry("apk/a", "-1")), "size"},
        {manifest(entry("apk/a", "1.5")), "size"},
        {manifest(entry("apk/a", "\"5\"")), "size"},
        {manifest(entry("apk/a").replace("aaaa", "zz")), "sha256"},
        {manifest(entry("apk/a") + "," + entry("apk/A")), "apk/A"},
        {manifest(entry("obb/com.a/../../x")), "leads out"},
        {manifest(entry("/etc/passwd")), "leads out"},
        {manifest(entry("obb/com.other/x")), "leads out"},
        {manifest(entry("apk/sub/x")), "leads out"},
        {manifest(entry("data/com.a")), "leads out"},
        {manifest(entry("apk/..\\\\..\\\\x")), "leads out"},
        {manifest(entry("obb/C:/x")), "leads out"},
        {manifest(entry("obb/com.a//x")), "leads out"},
        {manifest(entry("data/com.a/x").replace("\"size\"", R"("onHeadset": "data/com.a/../b/x", "size")")),
         "leads out"},
        {manifest(entry("data/com.a/x").replace("\"size\"", R"("onHeadset": "apk/x", "size")")), "leads out"},
        {manifest(entry("apk/a")).replace("\"files\"", R"("emptyFolders": ["data/com.a/x"], "files")"), ""},
        {manifest(entry("apk/a")).replace("\"files\"", R"("emptyFolders": ["obb/com.a/../b"], "files")"),
         "leads out"},
        {manifest(entry("apk/a")).replace("\"files\"", R"("emptyFolders": ["apk/x"], "files")"), "leads out"},
    };
    for (const auto& [text, problem] : cases) {
      const auto read = readManifest(text);
      const auto* refused = std::get_if<Bilingual>(&read);
      const QString told = refused == nullptr ? QString() : refused->shown();
      QVERIFY2(told.isEmpty() == (*problem == '\0') && told.contains(QLatin1String(problem)),
               qPrintable(QString::fromUtf8(text) + told));
    }
  }

  void namesForBothDesktops() {
    const std::pair<QString, QString> cases[] = {
        {u"存档 'a' 🎮.dat"_s, u"存档 'a' 🎮.dat"_s},
        {u"a<b>:\"c|?*\\d"_s, u"a_b___c____d"_s},
        {u"CON"_s, u"_CON"_s},
        {u"com1.txt"_s, u"_com1.txt"_s},
        {u"console"_s, u"console"_s},
        {u"end. ."_s, u"end___"_s},
        {QString(), u"_"_s},
        {QString(QChar(0xD83C)), u"_"_s},
        {u"a\tb"_s, u"a_b"_s},
    };
    for (const auto& [name, safe] : cases) QCOMPARE(safeName(name), safe);
    const QString longest =
        backupFolderName(QString(300, u'中'), QString(300, u'9'), u"1"_s, u"2026-01-01"_s);
    QVERIFY(longest.endsWith(u" (1) 2026-01-01"_s) && longest.toUtf8().size() <= 249);
    QCOMPARE(backupFolderName(u" A/B\r\n"_s, {}, u"7"_s, u"2026-01-01"_s), u"A_B (7) 2026-01-01"_s);
    LocalPaths paths;
    for (const auto& [path, local] : {std::pair(u"a/Save"_s, u"a/Save"_s),
                                      {u"a/save"_s, u"a/save~2"_s},
                                      {u"a/b:"_s, u"a/b_"_s},
                                      {u"a/b?"_s, u"a/b_~2"_s}})
      QCOMPARE(paths.add(path), local);
  }

  void whatAHeadsetHasOfAnApp() {
    const AppState state = appStateIn(
        u"F 12 1611234567 /data/app/com.a-1/base.apk\r\n"
        "F 5 1 /sdcard/Android/obb/com.a/main 1.obb \r\nF 6 1 /sdcard/Android/data/com.a/x\r\n"
        "/sdcard/Android/data/com.a\r\n/sdcard/Android/data/com.a/d\r\n/sdcard/Android/data/com.a/d/e f\r\n"
        "/sdcard/Android/obb/com.a/g\r\nF 0 1 /sdcard/Android/obb/com.a/g/h\r\n"
        "find: /sdcard/Android/data/com.a/b: Permission denied\r\n"
        "find: /sdcard/Android/data/com.a/b: Permission denied\r\n"
        "    versionCode=83 minSdk=23 targetSdk=28\r\n    versionName=1.2\r\nend\r\n"_s,
        u"com.a"_s);
    QVERIFY(state.whole && state.build == u"83"_s && state.version == u"1.2"_s && state.bytes() == 23);
    QCOMPARE(state.expansionFiles.value(0).path, u"/sdcard/Android/obb/com.a/main 1.obb "_s);
    QCOMPARE(state.complaints.size(), 1);
    QCOMPARE(emptyFolders(state), QStringList{u"data/com.a/d/e f"_s});
    QVERIFY(!appStateIn(u"F 12 1 /data/app/com.a-1/base.apk\r\nerror: closed\r\n"_s, u"com.a"_s).whole);
    QCOMPARE(headsetIn(u"Quest 3\r\n2G0YC\r\n"_s).serial, u"2G0YC"_s);
    QCOMPARE(headsetIn(u"adb: no devices/emulators found\r\n"_s).serial, QString());
  }

  /// The next start tells of a backup that died, while it is unfinished.
  void backupsThatDied() {
    QTemporaryDir folder;
    const QJsonObject note{{u"kind"_s, BackupRun::noteKind}, {u"folder"_s, folder.path()}};
    QVERIFY(BackupRun::settle(note).line.isEmpty());
    QVERIFY(writeFile(folder.filePath(recordName), "{}"));
    QVERIFY(BackupRun::settle(note).line.contains(folder.path()));
  }

  /// What a folder holds is told by what lies in it.
  void backupsInAFolder() {
    QTemporaryDir folder;
    const auto write = [&](const QString& path, const QByteArray& content = "x") {
      return writeFile(folder.filePath(path), content);
    };
    QVERIFY(write(u"all/Game 1 (2) 2026/backup.json"_s, manifest(entry("apk/base.apk"))));
    QVERIFY(write(u"all/half/backup.json.partial"_s) && write(u"all/torn/backup.json"_s, "{"));
    QVERIFY(write(u"all/com.menu.obb/main.obb"_s) && write(u"all/com.menu.data/files/save"_s));
    QVERIFY(write(u"all/com.menu.data.old2/save"_s) && write(u"all/com.gone.partial/main.obb"_s));
    qputenv("XDG_STATE_HOME", folder.filePath(u"state"_s).toUtf8());
    qputenv("LOCALAPPDATA", folder.filePath(u"state"_s).toUtf8());
    QVERIFY(write(u"all/com.half/save"_s) &&
            writeFile(stateFolder() + u"/journal/1-a-1.json"_s,
                      QJsonDocument({{u"kind"_s, u"copy"_s},
                                     {u"place"_s, notedPath(folder.filePath(u"all/com.half"_s))}})
                          .toJson()));
    QVERIFY(write(u"all/My Game.APK"_s) && write(u"all/Documents/letter.txt"_s));
    QStringList told;
    for (const SavedApp& saved : savedAppsIn(folder.filePath(u"all"_s)))
      told << u"%1 %2%3"_s.arg(static_cast<int>(saved.kind))
                  .arg(saved.title(), saved.isUsable() ? QString() : u" !"_s);
    told.sort();
    QCOMPARE(told, (QStringList{u"0 com.a"_s, u"0 half !"_s, u"0 torn !"_s, u"1 My Game.APK"_s,
                                u"2 com.menu.obb"_s, u"3 com.half !"_s, u"3 com.menu.data"_s}));
    const QList<SavedApp> data = savedAppsIn(folder.filePath(u"all/com.menu.data/"_s));
    QCOMPARE(data.value(0).manifest.files.value(0).devicePath(),
             u"/sdcard/Android/data/com.menu.data/files/save"_s);
  }
};

QTEST_GUILESS_MAIN(BackupsReadersTest)
#include "backups_readers_test.moc"
