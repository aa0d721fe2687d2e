// The reader of packages against the real aapt: the same lines, the same words, the same exit code.

#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include "package_maker.h"
#include "sample_package.h"
#include "table_maker.h"

using namespace Qt::StringLiterals;
using namespace orvanta;
using namespace orvanta::test;

namespace {

QByteArray application(const QByteArray& content = {}, const QByteArray& label = "@string/app") {
  return "<application android:label=\"" + label + "\" android:icon=\"@drawable/icon\">" + content +
         "</application>";
}

QByteArray launcher(const QByteArray& attributes) {
  return "<activity " + attributes +
         "><intent-filter><action android:name=\"android.intent.action.MAIN\"/>"
         "<category android:name=\"android.intent.category.LAUNCHER\"/></intent-filter></activity>";
}

QByteArray named(const QByteArray& tag, const QByteArray& name, const QByteArray& more = {}) {
  return "<" + tag + " android:name=\"" + name + "\" " + more + "/>";
}

PackageParts resources() {
  const auto strings = [](const QByteArray& label) {
    return "<resources><string name=\"app\">" + label + "</string></resources>";
  };
  const QByteArray shape = "<shape xmlns:android=\"http://schemas.android.com/apk/res/android\"/>";
  return {
      {u"values/s.xml"_s, strings(R"(It\'s \"quoted\" \\ and\nlong é 種)")},
      {u"values/more.xml"_s,
       "<resources><string name=\"hop\">@string/app</string><string name=\"hops\">@string/hop</string>"
       "<string name=\"empty\"></string><integer name=\"number\">12</integer><bool name=\"yes\">true</bool>"
       "<string name=\"id\">a.b</string><style name=\"style\"/></resources>"},
      {u"values-de/s.xml"_s, strings("Deutsch")},
      {u"values-en-rGB/s.xml"_s, strings("British")},
      {u"values-b+sr+Latn/s.xml"_s, strings("Srpski")},
      {u"values-es/more.xml"_s, "<resources><string name=\"hop\">@string/empty</string></resources>"},
      {u"values-v21/s.xml"_s, strings("Newer")},
      {u"values-land/s.xml"_s, strings("Landscape")},
      {u"values-sw600dp/s.xml"_s, strings("Tablet")},
      {u"values-fr-port/s.xml"_s, strings("Portrait")},
      {u"values-fr-w300dp/s.xml"_s, strings("Wide")},
      {u"values-it-sw320dp/s.xml"_s, strings("Phone")},
      {u"values-it-small/s.xml"_s, strings("Small")},
      {u"values-it-normal/s.xml"_s, strings("Normal")},
      {u"drawable-ldpi/icon.xml"_s, shape},
      {u"drawable-hdpi/icon.xml"_s, shape},
      {u"drawable-xxhdpi/icon.xml"_s, shape},
      {u"drawable-anydpi-v26/icon.xml"_s, shape}};
}

}  // namespace

class TestBadging : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void manifests_data();
  void manifests();
  void samplePackages();
  void locales_data();
  void locales();
  void tableForms_data();
  void tableForms();
  void references();
  void onTheHeadset();

 private:
  QString path(const QString& name) const { return m_folder.filePath(name); }

  QTemporaryDir m_folder;
};

void TestBadging::initTestCase() {
  if (frameworkResources().isEmpty()) QSKIP("aapt has no framework resources here");
  QVERIFY(m_folder.isValid());
}

void TestBadging::manifests_data() {
  QTest::addColumn<QByteArray>("manifest");
  const auto row = [](const char* name, const QByteArray& manifest) { QTest::newRow(name) << manifest; };
  const QByteArray app = application();
  row("plain", manifestWith(app));
  row("label through references", manifestWith(application({}, "@string/hops")));
  row("label in the manifest", manifestWith(application({}, "In &quot;line&quot; \\\\")));
  row("label empty", manifestWith(application({}, "@string/empty")));
  row("label of the wrong kind", manifestWith(application({}, "@integer/number")));
  row("label of another package", manifestWith(application({}, "@android:string/ok")));
  row("label on the activity only",
      manifestWith("<application>" + launcher("android:name=\".Main\" android:label=\"@string/hop\"") +
                   "</application>"));
  row("no application", manifestWith({}));
  row("two applications", manifestWith(app + application({}, "Second")));
  row("banner", manifestWith("<application android:banner=\"@drawable/icon\" android:isGame=\"true\"/>"));
  row("debuggable of the wrong kind", manifestWith("<application android:debuggable=\"@string/app\"/>"));
  row("no version", manifestWith(app, {}));
  row("versions odd", manifestWith(app, "android:versionCode=\"-5\" android:versionName=\"a'b&quot;\\\\c\""));
  row("version name through a reference", manifestWith(app, "android:versionName=\"@string/hop\""));
  row("part of an app", manifestWith({}, "split=\"config.de\" android:versionCode=\"3\""));
  row("install location", manifestWith(app, "android:installLocation=\"preferExternal\""));
  row("old", manifestWith(named("uses-permission", "android.permission.READ_CONTACTS") +
                              named("uses-permission", "android.permission.WRITE_CONTACTS") + app,
                          {}, "<uses-sdk android:minSdkVersion=\"3\"/>"));
  row("no sdk",
      manifestWith(named("uses-permission", "android.permission.ACCESS_FINE_LOCATION") + app, {}, {}));
  row("sdk by name",
      manifestWith(app, {}, "<uses-sdk android:minSdkVersion=\"Q\" android:targetSdkVersion=\"Donut\"/>"));
  row("two sdks",
      manifestWith(app, {},
                   "<uses-sdk android:minSdkVersion=\"3\"/><uses-sdk android:minSdkVersion=\"9\"/>"));
  row("permissions",
      manifestWith(
          named("uses-permission", "android.permission.ACCESS_COARSE_LOCATION") +
          named("uses-permission", "android.permission.BLUETOOTH", "android:required=\"false\"") +
          named("uses-permission", "android.permission.READ_SMS") +
          named("uses-permission", "android.permission.WRITE_EXTERNAL_STORAGE",
                "android:maxSdkVersion=\"28\"") +
          named("uses-permission", "a.b",
                "android:requiredFeature=\"f.g\" android:requiredNotFeature=\"h\"") +
          named("uses-permission-sdk-m", "android.permission.RECORD_AUDIO", "android:maxSdkVersion=\"30\"") +
          named("uses-permission-sdk-23", "android.permission.CAMERA") + app));
  row("permission of the wrong kind", manifestWith(named("uses-permission", "@string/id") + app));
  row("features",
      manifestWith(named("uses-feature", "android.hardware.camera", "android:required=\"false\"") +
                   named("uses-feature", "android.hardware.camera.flash") +
                   named("uses-feature", "android.hardware.vr.headtracking", "android:version=\"1\"") +
                   named("uses-feature", "android.hardware.touchscreen.multitouch.jazzhands") +
                   "<uses-feature android:glEsVersion=\"0x00030001\"/>" + app));
  row("feature of the wrong kind", manifestWith(named("uses-feature", "@string/app") + app));
  row("feature groups",
      manifestWith("<feature-group android:label=\"@string/hop\">" +
                   named("uses-feature", "android.hardware.wifi") + "</feature-group><feature-group/>" +
                   named("uses-feature", "common.feature") + app));
  row("orientations",
      manifestWith(application(launcher("android:name=\".A\" android:screenOrientation=\"landscape\"") +
                               launcher("android:name=\"B\" android:screenOrientation=\"sensorPortrait\"") +
                               launcher("android:name=\"org.other.C\" android:label=\"@string/app\""))));
  row("activity label of the wrong kind",
      manifestWith(application("<activity android:name=\".A\" android:label=\"@integer/number\"/>")));
  row("launcher in two filters",
      manifestWith(application(
          "<activity android:name=\".A\"><intent-filter>" + named("action", "android.intent.action.MAIN") +
          "</intent-filter><intent-filter>" + named("category", "android.intent.category.LAUNCHER") +
          "</intent-filter></activity>")));
  row("service of the wrong kind",
      manifestWith(application(named("service", ".S", "android:permission=\"@string/id\"") +
                               launcher("android:name=\".A\""))));
  row("provider of the wrong kind",
      manifestWith(application(
          named("provider", ".P", "android:authorities=\"x\" android:exported=\"@string/app\""))));
  row("library of the wrong kind", manifestWith(application(named("uses-library", "@string/app"))));
  row("everything else",
      manifestWith("<compatible-screens><screen android:screenSize=\"small\" android:screenDensity=\"ldpi\"/>"
                   "</compatible-screens><supports-input>" +
                   named("input-type", "q") + "</supports-input>" + named("original-package", "o.p") +
                   named("package-verifier", "v", "android:publicKey=\"k\"") + app));
  row("nameless package", manifestWith("<uses-package/>" + app));
}

void TestBadging::manifests() {
  QFETCH(QByteArray, manifest);
  const QString file = path(u"manifest.apk"_s);
  for (const QStringList& encoding : {QStringList(), QStringList{u"--utf16"_s}}) {
    QCOMPARE(makePackage(file, manifest, resources(), encoding), QString());
    COMPARE_WITH_AAPT(file);
    if (QTest::currentTestFailed()) return;
  }
}

void TestBadging::samplePackages() {
  const QString file = path(u"sample.apk"_s);
  QCOMPARE((SamplePackage{.label = u"It's \"né\""_s,
                          .localizedLabels = {{u"zh-rCN"_s, u"应用"_s}, {u"fr"_s, u"L'app"_s}},
                          .permissions = {u"android.permission.INTERNET"_s},
                          .features = {u"android.hardware.vr.headtracking"_s},
                          .icon = true})
               .write(file),
           QString());
  COMPARE_WITH_AAPT(file);
  QCOMPARE((SamplePackage{.split = u"config.xhdpi"_s}).write(file), QString());
  COMPARE_WITH_AAPT(file);
  COMPARE_WITH_AAPT(frameworkResources());
}

void TestBadging::locales_data() {
  QTest::addColumn<QByteArrayList>("labelled");
  QTest::addColumn<QByteArrayList>("asked");
  const auto row = [](const char* name, const char* labelled, const char* asked) {
    QTest::newRow(name) << QByteArray(labelled).split(' ') << QByteArray(asked).split(' ');
  };
  row("scripts", "zh-CN zh-TW sr--Latn sr--Cyrl uz--Arab pa-PK ku--Arab az--Cyrl",
      "zh zh-HK zh-MO zh-SG zh-MY zh-US sr sr-ME sr-RS uz uz-AF uz-CN pa pa-IN ku ku-IR az az-RU az-IQ");
  row("spanish", "es es-ES es-MX", "es-AR es-419 es-US es-PR es-GQ es-BZ");
  row("spanish of America", "es-ES es-419 es-US", "es-MX es-CL es-AR es-DO es-IC");
  row("english", "en-GB en-AU en-001", "en-US en-IN en-CA en-PH en-BE en-NZ en-DE en-XA en-AS en-MH");
  row("english without a default", "en-GB fr", "en en-US en-AU en-CA");
  row("portuguese", "pt-BR pt-PT", "pt pt-AO pt-MO pt-FR pt-US pt-TL");
  row("arabic", "ar-EG ar-015 ar-SA", "ar ar-MA ar-DZ ar-AE ar-XB ar-YE");
  row("hong kong", "zh-HK zh-TW zh-CN", "zh--Hant zh-MO--Hant zh-MO zh-ID zh-AU");
  row("representatives", "de-AT de-DE fr-BE fr-FR it-CH it-IT nl-BE nl-NL ru-BY ru-RU",
      "de-LI fr-CA it-SM nl-SR ru-UA");
  row("tagalog", "tl", "fil fil-PH tl-PH");
  row("filipino", "fil tl", "fil-PH tl-PH");
  row("no better than another", "es-003 es-021 yo-053 yo-005 fr-AA fr-ZZ fr-001", "es-029 yo-TN yo fr-QQ");
  row("old and unknown codes", "iw in ji qqq-AA xyz", "iw-IL in-ID ji-UA he id yi qqq qqq-BB xyz-XY");
}

/// Labels in some locales, and something in others, so that these are asked for too.
void TestBadging::locales() {
  QFETCH(QByteArrayList, labelled);
  QFETCH(QByteArrayList, asked);
  QList<TableVersion> versions = {{.label = u"default"_s, .icon = u"r/a.png"_s}};
  const auto addVersion = [&versions](const QByteArray& locale, const QString& label) {
    const QByteArrayList parts = locale.split('-');
    TableVersion version = {
        .language = parts.first(), .region = parts.value(1), .script = parts.value(2), .label = label};
    if (parts.size() > 3) version.script = parts.value(3);
    versions << version;
  };
  for (const QByteArray& locale : labelled) addVersion(locale, QString::fromLatin1(locale));
  for (const QByteArray& locale : asked) addVersion(locale, {});
  const QString file = path(u"locales.apk"_s);
  const QByteArray manifest = labelManifest();
  for (int turn = 0; turn < 2; ++turn) {
    QVERIFY(
        writeParts(file, {{u"AndroidManifest.xml"_s, manifest}, {u"resources.arsc"_s, makeTable(versions)}}));
    QCOMPARE(badging(ours(), file).count("application-label"), versions.size());
    COMPARE_WITH_AAPT(file);
    if (QTest::currentTestFailed()) return;
    std::reverse(versions.begin(), versions.end());
  }
}

void TestBadging::tableForms_data() {
  QTest::addColumn<int>("form");
  QTest::newRow("sparse") << static_cast<int>(TableForm::Sparse);
  QTest::newRow("short offsets") << static_cast<int>(TableForm::Offset16);
  QTest::newRow("compact") << static_cast<int>(TableForm::Compact);
}

/// The forms of newer packagers say the same as the plain one, which aapt reads. Paths are short, as after
/// obfuscation.
void TestBadging::tableForms() {
  QFETCH(int, form);
  const QList<TableVersion> versions = {{.density = 120, .icon = u"r/x.png"_s},
                                        {.label = u"Plain"_s, .icon = u"r/a.png"_s},
                                        {.density = 160, .icon = u"r/b.png"_s},
                                        {.density = 240, .icon = u"r/c.webp"_s},
                                        {.density = 640, .icon = u"r/d.png"_s},
                                        {.density = 65534, .icon = u"r/e.xml"_s},
                                        {.density = 65535, .icon = u"r/f.png"_s},
                                        {.language = "de", .label = u"Schlicht"_s, .icon = u"r/g.png"_s}};
  const QString file = path(u"forms.apk"_s);
  const QByteArray manifest = labelManifest();
  QVERIFY(
      writeParts(file, {{u"AndroidManifest.xml"_s, manifest}, {u"resources.arsc"_s, makeTable(versions)}}));
  const Badging expected = badging(theirs(), file);
  QCOMPARE(expected.count("application-icon-"), 6);
  const QByteArray table = makeTable(versions, static_cast<TableForm>(form));
  QVERIFY(writeParts(file, {{u"AndroidManifest.xml"_s, manifest}, {u"resources.arsc"_s, table}}, true));
  QCOMPARE(badging(ours(), file).text(), expected.text());
}

/// Chains of references are followed as far as aapt does, and circles end.
void TestBadging::references() {
  const QString file = path(u"references.apk"_s);
  const QList<TableVersion> versions = {{.label = u"End"_s, .icon = u"i.png"_s},
                                        {.language = "de", .label = u"Ende"_s}};
  for (const int hops : {1, 2, 18, 19, 20, 21}) {
    const QByteArray manifest = labelManifest(kHopId + static_cast<quint32>(hops) - 1);
    const QByteArray table = makeTable(versions, TableForm::Plain, hops);
    QVERIFY(writeParts(file, {{u"AndroidManifest.xml"_s, manifest}, {u"resources.arsc"_s, table}}));
    COMPARE_WITH_AAPT(file);
  }
  for (const quint32 id :
       {0u, 1u, kLabelId & 0xffffffu, 0x7f020063u, 0x7f090000u, 0x02020000u, 0xffffffffu}) {
    const QByteArray table = makeTable(versions);
    QVERIFY(writeParts(file, {{u"AndroidManifest.xml"_s, labelManifest(id)}, {u"resources.arsc"_s, table}}));
    COMPARE_WITH_AAPT(file);
  }
}

/// The program for the headset says the same, here in an emulator.
void TestBadging::onTheHeadset() {
  const QString emulator = QStandardPaths::findExecutable(u"qemu-aarch64-static"_s);
  const QString program = QStringLiteral(HEADSET_PROGRAM);
  if (emulator.isEmpty() || !QFile::exists(program)) QSKIP("no emulator, or no program for the headset");
  QVERIFY(QFileInfo(program).size() < (1 << 20));
  const QString file = path(u"headset.apk"_s);
  QCOMPARE(makePackage(file, manifestWith(application(launcher("android:name=\".A\""))), resources()),
           QString());
  for (const QString& some : {file, path(u"absent.apk"_s), program}) {
    QCOMPARE(badging({emulator, program}, some).text(), badging(theirs(), some).text());
  }
}

QTEST_GUILESS_MAIN(TestBadging)
#include "tst_badging.moc"
