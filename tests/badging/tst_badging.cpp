// The reader of packages against the real aapt: the same lines, the same errors, the same exit code, also for
// broken and hostile packages, which must cost little.

#include <sys/wait.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include "device-tools/badging/byte_source.h"
#include "package_maker.h"
#include "sample_package.h"
#include "support/files.h"

using namespace Qt::StringLiterals;
using namespace orvanta;
using namespace orvanta::test;

namespace {

QByteArray application(const QByteArray& content = {}, const QByteArray& label = "@string/app") {
  return "<application android:label='" + label + "' android:icon='@drawable/icon'>" + content +
         "</application>";
}

/// Launchers show it, even if `between` separates the two elements that say so.
QByteArray activity(const QByteArray& attributes, const QByteArray& between = {}) {
  return "<activity " + attributes + "><intent-filter><action android:name='android.intent.action.MAIN'/>" +
         between + "<category android:name='android.intent.category.LAUNCHER'/></intent-filter></activity>";
}

QByteArray asksFor(const QByteArray& permission, const QByteArray& more = {}) {
  return "<uses-permission android:name='android.permission." + permission + "' " + more + "/>";
}

QByteArray text(const QByteArray& name, const QByteArray& content) {
  return "<resources><string name='" + name + "'>" + content + "</string></resources>";
}

/// The label in many configurations, and references to it, each to the one before.
PackageParts resources() {
  QByteArray more =
      "<resources><string name='hop0'>@string/app</string><string name='empty'></string>"
      "<integer name='number'>12</integer><string name='id'>a.b</string><style name='style'/>";
  for (int hop = 1; hop <= 20; ++hop) {
    more += "<string name='hop" + QByteArray::number(hop) + "'>@string/hop" + QByteArray::number(hop - 1) +
            "</string>";
  }
  const QByteArray shape = "<shape xmlns:android='http://schemas.android.com/apk/res/android'/>";
  return {{u"values/s.xml"_s, text("app", R"(It\'s \"quoted\" \\ and\nlong é 種)")},
          {u"values/more.xml"_s, more + "</resources>"},
          {u"values-es/more.xml"_s, "<resources><string name='hop0'>@string/empty</string></resources>"},
          {u"values-en-rGB/s.xml"_s, text("app", "British")},
          {u"values-v21/s.xml"_s, text("app", "Newer")},
          {u"values-land/s.xml"_s, text("app", "Landscape")},
          {u"values-sw600dp/s.xml"_s, text("app", "Tablet")},
          {u"values-fr-port/s.xml"_s, text("app", "Portrait")},
          {u"values-fr-w300dp/s.xml"_s, text("app", "Wide")},
          {u"values-it-sw320dp/s.xml"_s, text("app", "Phone")},
          {u"values-it-small/s.xml"_s, text("app", "Small")},
          {u"values-it-normal/s.xml"_s, text("app", "Normal")},
          {u"drawable-ldpi/icon.xml"_s, shape},
          {u"drawable-xxhdpi/icon.xml"_s, shape},
          {u"drawable-anydpi-v26/icon.xml"_s, shape}};
}

// The address space that the program gets where its memory is looked at: 64 MiB, which is more than it may
// fill. The address sanitizer reserves terabytes, so there only the time is looked at.
#ifdef __SANITIZE_ADDRESS__
constexpr QLatin1StringView kLimit("exec \"$0\" \"$@\"");
#else
constexpr QLatin1StringView kLimit("ulimit -v 65536; exec \"$0\" \"$@\"");
#endif

}  // namespace

class TestBadging : public QObject {
  Q_OBJECT

  QTemporaryDir m_folder;

  QString path(const QString& name) const { return m_folder.filePath(name); }
  static QByteArray iconIn(const QString& file) {
    QProcess process;
    process.start(ours(), {u"d"_s, u"icon"_s, file});
    const bool ended = process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit;
    return ended ? QByteArray::fromBase64(process.readAllStandardOutput()) : "crashed";
  }

 private Q_SLOTS:
  void initTestCase() {
    if (frameworkResources().isEmpty()) QSKIP("aapt has no framework resources here");
    QVERIFY(m_folder.isValid());
  }

  void manifests() {
    const QString file = path(u"manifest.apk"_s);
    const auto row = [&file](const char* name, const QByteArray& manifest) {
      for (const QStringList& encoding : {QStringList(), QStringList{u"--utf16"_s}}) {
        QVERIFY2(makePackage(file, manifest, resources(), encoding).isEmpty(), name);
        COMPARE_WITH_AAPT(file);
      }
    };
    const QByteArray app = application();
    row("plain", manifestWith(app));
    for (const QByteArray hop : {"0", "18", "19", "20"})
      row("label through references", manifestWith(application({}, "@string/hop" + hop)));
    row("label in the manifest", manifestWith(application({}, "In &quot;line&quot; \\\\")));
    row("label empty", manifestWith(application({}, "@string/empty")));
    row("label of another package", manifestWith(application({}, "@android:string/ok")));
    row("banner", manifestWith("<application android:banner='@drawable/icon' android:isGame='true'/>"));
    row("no version", manifestWith(app, {}));
    row("versions odd",
        manifestWith(app, "android:versionCode='-5' android:versionName='a&apos;b&quot;\\\\c'"));
    row("version name through a reference", manifestWith(app, "android:versionName='@string/hop0'"));
    row("part of an app", manifestWith({}, "split='config.de' android:versionCode='3'"));
    row("old", manifestWith(asksFor("READ_CONTACTS") + asksFor("WRITE_CONTACTS") + app, {},
                            "<uses-sdk android:minSdkVersion='9'/>"));
    row("no sdk", manifestWith(asksFor("ACCESS_FINE_LOCATION") + app, {}, {}));
    row("sdk by name",
        manifestWith(app, {}, "<uses-sdk android:minSdkVersion='Q' android:targetSdkVersion='Donut'/>"));
    row("two sdks",
        manifestWith(app, {}, "<uses-sdk android:minSdkVersion='3'/><uses-sdk android:minSdkVersion='9'/>"));
    row("permissions",
        manifestWith(asksFor("ACCESS_COARSE_LOCATION") + asksFor("BLUETOOTH", "android:required='false'") +
                     asksFor("READ_SMS") + asksFor("WRITE_EXTERNAL_STORAGE", "android:maxSdkVersion='28'") +
                     asksFor("CAMERA", "android:requiredFeature='f.g' android:requiredNotFeature='h'") +
                     "<uses-permission-sdk-m android:name='android.permission.RECORD_AUDIO' "
                     "android:maxSdkVersion='30'/>" +
                     app));
    const QByteArray features =
        "<uses-feature android:name='android.hardware.camera' android:required='false'/>"
        "<uses-feature android:name='android.hardware.camera.flash' android:version='1'/>"
        "<uses-feature android:name='android.hardware.touchscreen.multitouch.jazzhands'/>"
        "<uses-feature android:glEsVersion='0x00030001'/>";
    row("features", manifestWith(features + app));
    row("feature groups",
        manifestWith("<feature-group android:label='@string/hop0'><uses-feature "
                     "android:name='android.hardware.wifi'/></feature-group><feature-group/>" +
                     features + app));
    row("activities",
        manifestWith(application(activity("android:name='.A' android:screenOrientation='landscape'",
                                          "</intent-filter><intent-filter>") +
                                 activity("android:name='B' android:screenOrientation='sensorPortrait'") +
                                 activity("android:name='org.other.C' android:label='@string/app'"))));
    row("passed over",
        manifestWith("<compatible-screens><screen android:screenSize='small' android:screenDensity='ldpi'/>"
                     "</compatible-screens><supports-input><input-type android:name='q'/></supports-input>"
                     "<original-package android:name='o.p'/>" +
                     app));
    // These end the reading with a complaint, some with a failure.
    for (const QByteArray part :
         {"<uses-package/>", "<uses-permission android:name='@string/id'/>",
          "<uses-feature android:name='@string/app'/>", "<application android:label='@integer/number'/>",
          "<application android:debuggable='@string/app'/>"})
      row(part.constData(), manifestWith(part + app));
    for (const QByteArray part :
         {"<activity android:name='.A' android:label='@integer/number'/>",
          "<service android:name='.S' android:permission='@string/id'/>",
          "<provider android:name='.P' android:authorities='x' android:exported='@string/app'/>",
          "<uses-library android:name='@string/app'/>"})
      row(part.constData(), manifestWith(application(part)));
  }

  /// What all other tests are made with says the same to both.
  void samplePackages() {
    const QList<SamplePackage> samples = {
        {},
        {.package = u"com.example.long.name"_s, .versionCode = 2'000'000'000, .versionName = u"3.5 'beta'"_s},
        {.minSdk = 16, .targetSdk = 35, .label = uR"(It's "quoted" \ @ 包 🏌)"_s, .icon = true},
        {.label = QString(40'000, u'長'),
         .localizedLabels = {{u"zh-rCN"_s, u"应用"_s}, {u"de"_s, u"Größe"_s}}},
        {.permissions = {u"android.permission.CAMERA"_s, u"android.permission.WRITE_EXTERNAL_STORAGE"_s},
         .features = {u"android.hardware.vr.headtracking"_s, u"android.hardware.wifi"_s}},
        {.label = {}, .iconPng = "no picture", .launchable = false, .testOnly = true},
        {.splitRequired = true, .nativeCode = {u"arm64-v8a"_s}, .paddingBytes = 100'000},
        {.split = u"config.zh"_s, .extraFiles = {{u"assets/a"_s, QByteArray(5'000, 'a')}}},
    };
    const QString file = path(u"sample.apk"_s);
    for (const SamplePackage& sample : samples) {
      QCOMPARE(sample.write(file), QString());
      const Badging read = test::badging(ours(), file);
      QCOMPARE(read.exitCode, 0);
      QCOMPARE(read.count("application-icon-"), sample.hasIcon() ? 3 : 0);
      QCOMPARE(read.count("launchable-activity:"), sample.launchable && sample.split.isEmpty() ? 1 : 0);
      COMPARE_WITH_AAPT(file);
    }
  }

  /// A file that is being written can become shorter while parts of it are mapped.
  void shrinkingFile() {
    const QString file = path(u"shrinking"_s);
    QVERIFY(writeFile(file, QByteArray(100'000, 'x')));
    int ends[2];
    QCOMPARE(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
      dup2(ends[1], STDERR_FILENO);
      orvanta::badging::endIfFileShrinks("it shrank");
      orvanta::badging::FileSource source;
      source.open(QFile::encodeName(file).constData());
      const orvanta::badging::Blob all = source.map(0, 100'000);
      if (truncate(QFile::encodeName(file).constData(), 0) != 0) _exit(2);
      _exit(all.bytes().u8(90'000) == 'x' ? 3 : 4);
    }
    int status = 0;
    QCOMPARE(waitpid(child, &status, 0), child);
    char words[16] = {};
    QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 1);
    QCOMPARE(::read(ends[0], words, sizeof(words)), 9);
    QCOMPARE(QByteArray(words), "it shrank");
  }

  void otherFiles() {
    for (const QString& file : {frameworkResources(), path(u"absent.apk"_s), u"/dev/null"_s})
      COMPARE_WITH_AAPT(file);
  }

  void locales() {
    // Labels in some locales, and something else in others, so that these are asked for too.
    const std::pair<QString, QString> rows[] = {
        {u"zh-rCN zh-rTW b+sr+Latn b+sr+Cyrl b+uz+Arab pa-rPK b+ku+Arab b+az+Cyrl"_s,
         u"zh zh-rHK zh-rMO zh-rSG zh-rUS sr sr-rME sr-rRS uz uz-rAF uz-rCN pa pa-rIN ku ku-rIR az az-rRU "
         "az-rIQ"_s},
        {u"es es-rES es-rMX"_s, u"es-rAR b+es+419 es-rUS es-rPR es-rGQ es-rBZ"_s},
        {u"es-rES b+es+419 es-rUS"_s, u"es-rMX es-rCL es-rAR es-rDO es-rIC"_s},
        {u"en-rGB en-rAU b+en+001"_s, u"en-rUS en-rIN en-rCA en-rPH en-rBE en-rNZ en-rDE en-rXA en-rMH"_s},
        {u"en-rGB fr"_s, u"en en-rUS en-rAU en-rCA"_s},
        {u"pt-rBR pt-rPT ar-rEG b+ar+015 ar-rSA"_s, u"pt pt-rAO pt-rUS pt-rTL ar ar-rMA ar-rAE ar-rXB"_s},
        {u"zh-rHK zh-rTW zh-rCN"_s, u"b+zh+Hant b+zh+Hant+MO zh-rMO zh-rID zh-rAU"_s},
        {u"de-rAT de-rDE fr-rBE fr-rFR it-rCH it-rIT nl-rBE nl-rNL ru-rBY ru-rRU"_s,
         u"de-rLI fr-rCA it-rSM nl-rSR ru-rUA"_s},
        {u"fil tl"_s, u"fil-rPH tl-rPH"_s},
        {u"b+es+003 b+es+021 b+yo+053 b+yo+005 fr-rAA fr-rZZ b+fr+001"_s, u"b+es+029 yo-rTN yo fr-rQQ"_s},
        {u"iw in ji b+qqq+AA b+xyz"_s, u"iw-rIL in-rID ji-rUA he id yi b+qqq b+xyz+XY"_s},
    };
    for (const auto& [labelled, asked] : rows) {
      PackageParts parts = {{u"values/s.xml"_s, text("app", "default")},
                            {u"values/more.xml"_s, text("other", "x")}};
      for (const QString& locale : labelled.split(u' '))
        parts[u"values-%1/s.xml"_s.arg(locale)] = text("app", locale.toUtf8());
      for (const QString& locale : asked.split(u' '))
        parts[u"values-%1/more.xml"_s.arg(locale)] = text("other", "x");
      const QString file = path(u"locales.apk"_s);
      QCOMPARE(makePackage(file, manifestWith("<application android:label='@string/app'/>"), parts),
               QString());
      COMPARE_WITH_AAPT(file);
    }
  }

  /// The forms of newer packagers say the same as the plain one, which aapt reads. Paths are short, as after
  /// obfuscation.
  void tableForms() {
    const QList<TableVersion> versions = {{.density = 120, .icon = u"r/x.png"_s},
                                          {.label = u"Plain"_s, .icon = u"r/a.png"_s},
                                          {.density = 240, .icon = u"r/c.webp"_s},
                                          {.density = 640, .icon = u"r/d.png"_s},
                                          {.density = 65535, .icon = u"r/f.png"_s},
                                          {.language = "de", .label = u"Schlicht"_s, .icon = u"r/g.png"_s}};
    const QString file = path(u"forms.apk"_s);
    PackageParts parts = {{u"AndroidManifest.xml"_s, labelManifest()},
                          {u"resources.arsc"_s, makeTable(versions)}};
    QVERIFY(writeArchive(file, parts));
    const Badging expected = test::badging(u"aapt"_s, file);
    QCOMPARE(expected.count("application-icon-"), 5);
    for (const TableForm form :
         {TableForm::Plain, TableForm::Sparse, TableForm::Offset16, TableForm::Compact}) {
      parts[u"resources.arsc"_s] = makeTable(versions, form);
      QVERIFY(writeArchive(file, parts, true));
      QCOMPARE(test::badging(ours(), file).text(), expected.text());
    }
  }

  /// The plain picture for a low density, else one that the icon is drawn with.
  void icons() {
    const QByteArray one = QByteArray::fromBase64(
        "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAIAAACQd1PeAAAADElEQVR4nGP4z8AAAAMBAQDJ/pLvAAAAAElFTkSuQmCC");
    const QByteArray two = QByteArray::fromBase64(
        "iVBORw0KGgoAAAANSUhEUgAAAAIAAAACCAIAAAD91JpzAAAAEElEQVR4nGP4z8AARAwQCgAf7gP9i18U1AAAAABJRU5ErkJggg="
        "=");
    const auto drawn = [](const QByteArray& front) {
      return "<adaptive-icon xmlns:android='http://schemas.android.com/apk/res/android'><background "
             "android:drawable='@drawable/back'/><foreground>" +
             front + "</foreground></adaptive-icon>";
    };
    const QByteArray front = drawn("<inset android:drawable='@drawable/front'/>");
    const QString high = u"drawable-xhdpi/icon.png"_s;
    const QString layers = u"drawable-anydpi-v26/icon.xml"_s;
    const QString back = u"drawable-nodpi/back.png"_s;
    const std::pair<PackageParts, int> rows[] = {
        {{{u"drawable-mdpi/icon.png"_s, one}, {high, two}}, 1},
        {{{high, two}}, 2},
        {{{high, two}, {layers, front}, {back, one}, {u"drawable-nodpi/front.png"_s, one}}, 2},
        {{{layers, front}, {back, one}, {u"drawable-nodpi/front.png"_s, two}}, 2},
        {{{layers, drawn({})}, {back, one}}, 0},
    };
    const QString file = path(u"icon.apk"_s);
    for (const auto& [parts, side] : rows) {
      QCOMPARE(makePackage(file, manifestWith("<application android:icon='@drawable/icon'/>"), parts),
               QString());
      const QByteArray picture = iconIn(file);
      QCOMPARE(picture.isEmpty() ? 0 : int(picture[19]), side);  // the width, in the first chunk
    }
    for (const auto& [name, content] : {std::pair(u"r/x.png"_s, QByteArray("no picture")),
                                        {u"r/x.png"_s, one + QByteArray(70'000, 'x')},
                                        {u"r/x.xml"_s, "no picture"},
                                        {u"r/y.png"_s, one}}) {
      QVERIFY(writeArchive(file, {{u"AndroidManifest.xml"_s, labelManifest()},
                                  {u"resources.arsc"_s, makeTable({{.icon = u"r/x."_s + name.right(3)}})},
                                  {name, content}}));
      QCOMPARE(iconIn(file), QByteArray());
    }
  }

  void brokenFiles() {
    const PackageParts parts = {{u"AndroidManifest.xml"_s, labelManifest()},
                                {u"resources.arsc"_s, makeTable({{.label = u"Label"_s, .icon = u"i"_s}})}};
    const auto row = [this](const char* name, const QByteArray& content) {
      const QString file = path(u"broken.apk"_s);
      QVERIFY2(writeFile(file, content), name);
      COMPARE_WITH_AAPT(file);
      QCOMPARE(iconIn(file), QByteArray());
    };
    const auto packed = [this](const PackageParts& some, bool deflated = false) {
      return writeArchive(path(u"broken.apk"_s), some, deflated) ? readFile(path(u"broken.apk"_s))
                                                                 : QByteArray();
    };
    const auto changed = [](QByteArray bytes, const QByteArray& from, const QByteArray& to) {
      return bytes.replace(bytes.lastIndexOf(from), to.size(), to);
    };
    const auto with = [&](const QString& name, const QByteArray& content) {
      PackageParts some = parts;
      some[name] = content;
      return packed(some);
    };
    const QByteArray whole = packed(parts);
    const QByteArray deflated = packed(parts, true);
    const QString manifest = u"AndroidManifest.xml"_s;
    const QString table = u"resources.arsc"_s;

    row("sound", whole);
    row("empty", {});
    row("text", QByteArray(5000, 'x'));
    row("cut short", whole.left(whole.size() - 1));
    row("more behind the end", whole + "x");
    row("comment", changed(whole, QByteArray("\0\0", 2), QByteArray("\5\0", 2)) + "hello");
    row("something before the beginning", "x" + whole);
    row("no manifest", packed({{table, parts[table]}}));
    row("no resources", packed({{manifest, parts[manifest]}}));
    row("empty manifest", with(manifest, {}));
    row("empty resources", with(table, {}));
    row("manifest in text", with(manifest, manifestWith({})));
    row("resources in text", with(table, "<x/>"));
    row("name twice", with(u"resources.arsd"_s, "x").replace("resources.arsd", "resources.arsc"));
    row("names differ", changed(whole, "AndroidManifest", "androidManifest"));
    row("directory entry broken", changed(whole, "PK\1\2", "PK\1\3"));
    row("local header broken", QByteArray(whole).replace(0, 4, "PK\3\5"));
    QByteArray size = deflated.mid(22, 4);
    ++size[0];
    row("unpacked size wrong", QByteArray(deflated).replace(deflated.mid(22, 4), size));
    row("deflated data broken", QByteArray(deflated).replace(60, 40, QByteArray(40, '\xff')));
    for (const char* id :
         {"00000000", "01000000", "00000200", "6300027f", "0000097f", "00000202", "ffffffff"}) {
      QByteArray changedLabel = parts[manifest];
      changedLabel.replace(QByteArray::fromHex("0000027f"), QByteArray::fromHex(id));
      row(id, with(manifest, changedLabel));
    }
    for (const int step : {4, 8, 12, 28, 40, 200, 300, 320, 600}) {
      for (const QString& name : {table, manifest}) {
        QByteArray damaged = parts[name];
        damaged.replace(step, 4, QByteArray("\xf0\xff\xff\x7f", 4));
        row(qPrintable(name), with(name, damaged));
      }
    }
  }

  void memory() {
    // Whatever a file says, it costs neither much memory nor much time.
    QList<TableVersion> versions = {{.label = u"x"_s, .icon = u"y"_s}};
    for (int i = 0; i < 60'000; ++i) {
      const char language[] = {char('a' + i % 26), char('a' + i / 26 % 26), 0};
      versions << TableVersion{.language = language, .density = i, .label = u"x"_s, .icon = u"y"_s};
    }
    for (const auto& [table, refused] :
         {std::pair(QByteArray(300 << 20, '\0'), true),
          {makeTable({{.label = QString(28 << 20, u'x'), .icon = u"i"_s}}), false},
          {makeTable(versions), true},
          {makeTable(versions.mid(0, 5'000)), false}}) {
      const QString file = path(u"large.apk"_s);
      QVERIFY(writeArchive(file, {{u"AndroidManifest.xml"_s, labelManifest()}, {u"resources.arsc"_s, table}},
                           refused));
      QElapsedTimer timer;
      timer.start();
      const Badging result = test::badging(u"sh"_s, file, {u"-c"_s, kLimit, ours()});
      QVERIFY2(timer.elapsed() < 20'000, QByteArray::number(timer.elapsed()).constData());
      QCOMPARE(result.exitCode, refused ? 1 : 0);
      QCOMPARE(result.errors.isEmpty(), !refused);
    }
  }
};

QTEST_GUILESS_MAIN(TestBadging)
#include "tst_badging.moc"
