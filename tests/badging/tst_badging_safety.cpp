// Broken and hostile packages: refused in aapt's words, and at little cost.

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include "package_maker.h"
#include "sample_package.h"
#include "table_maker.h"

using namespace Qt::StringLiterals;
using namespace orvanta;
using namespace orvanta::test;

namespace {

// The address space that the program gets where its memory is looked at: 64 MiB, which is more than it may
// fill. The address sanitizer reserves terabytes, so there only the time is looked at.
#ifdef __SANITIZE_ADDRESS__
const QStringList kLimited;
#else
const QStringList kLimited = {u"sh"_s, u"-c"_s, u"ulimit -v 65536; exec \"$0\" \"$@\""_s};
#endif

}  // namespace

class TestBadgingSafety : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void brokenFiles_data();
  void brokenFiles();
  void memory_data();
  void memory();

 private:
  QString path(const QString& name) const { return m_folder.filePath(name); }

  QTemporaryDir m_folder;
};

void TestBadgingSafety::initTestCase() {
  if (frameworkResources().isEmpty()) QSKIP("aapt has no framework resources here");
  QVERIFY(m_folder.isValid());
}

void TestBadgingSafety::brokenFiles_data() {
  QTest::addColumn<QByteArray>("content");
  const PackageParts parts = {{u"AndroidManifest.xml"_s, labelManifest()},
                              {u"resources.arsc"_s, makeTable({{.label = u"Label"_s, .icon = u"i"_s}})}};
  const auto packed = [this](const PackageParts& some, bool deflated = false) {
    return writeParts(path(u"broken.apk"_s), some, deflated) ? readFile(path(u"broken.apk"_s)) : QByteArray();
  };
  const auto changed = [](QByteArray bytes, const QByteArray& from, const QByteArray& to) {
    return bytes.replace(bytes.lastIndexOf(from), to.size(), to);
  };
  const QByteArray whole = packed(parts);
  const QByteArray deflated = packed(parts, true);
  PackageParts without = parts;
  without.remove(u"resources.arsc"_s);
  PackageParts twice = parts;
  twice[u"resources.arsd"_s] = "x";

  QTest::newRow("sound") << whole;
  QTest::newRow("sound, deflated") << deflated;
  QTest::newRow("empty") << QByteArray();
  QTest::newRow("text") << QByteArray(5000, 'x');
  QTest::newRow("cut short") << whole.left(whole.size() - 1);
  QTest::newRow("more behind the end") << whole + "x";
  QTest::newRow("comment") << changed(whole, QByteArray("\0\0", 2), QByteArray("\5\0", 2)) + "hello";
  QTest::newRow("something before the beginning") << QByteArray("x") + whole;
  QTest::newRow("no manifest") << packed({{u"resources.arsc"_s, parts[u"resources.arsc"_s]}});
  QTest::newRow("no resources") << packed(without);
  QTest::newRow("empty manifest") << packed({{u"AndroidManifest.xml"_s, QByteArray()}});
  QTest::newRow("empty resources") << packed(
      {{u"AndroidManifest.xml"_s, labelManifest()}, {u"resources.arsc"_s, ""}});
  QTest::newRow("manifest in text") << packed({{u"AndroidManifest.xml"_s, manifestWith({})}});
  QTest::newRow("resources in text") << packed(
      {{u"AndroidManifest.xml"_s, labelManifest()}, {u"resources.arsc"_s, "<x/>"}});
  QTest::newRow("name twice") << packed(twice).replace("resources.arsd", "resources.arsc");
  QTest::newRow("names differ") << changed(whole, "AndroidManifest", "androidManifest");
  QTest::newRow("directory entry broken") << changed(whole, "PK\1\2", "PK\1\3");
  QTest::newRow("local header broken") << QByteArray(whole).replace(0, 4, "PK\3\5");
  QTest::newRow("unpacked size wrong")
      << QByteArray(deflated).replace(readFile(path(u"broken.apk"_s)).mid(14, 4), QByteArray("\1\2\3\4"));
  QTest::newRow("deflated data broken") << QByteArray(deflated).replace(60, 40, QByteArray(40, '\xff'));
  for (const int step : {4, 8, 12, 28, 40, 200, 300, 320, 600}) {
    PackageParts damaged = parts;
    damaged[u"resources.arsc"_s].replace(step, 4, QByteArray("\xf0\xff\xff\x7f", 4));
    QTest::addRow("resources damaged at %d", step) << packed(damaged);
    damaged = parts;
    damaged[u"AndroidManifest.xml"_s].replace(step, 4, QByteArray("\xf0\xff\xff\x7f", 4));
    QTest::addRow("manifest damaged at %d", step) << packed(damaged);
  }
}

void TestBadgingSafety::brokenFiles() {
  QFETCH(QByteArray, content);
  const QString file = path(u"broken.apk"_s);
  QVERIFY(writeFile(file, content));
  COMPARE_WITH_AAPT(file);
  COMPARE_WITH_AAPT(path(u"absent.apk"_s));
  COMPARE_WITH_AAPT(u"/dev/null"_s);
}

void TestBadgingSafety::memory_data() {
  QTest::addColumn<QByteArray>("table");
  QTest::addColumn<bool>("refused");
  QTest::newRow("far too large") << QByteArray(300 << 20, '\0') << true;
  QByteArray strings = makeTable({{.label = QString(28 << 20, u'x'), .icon = u"i"_s}});
  QTest::newRow("long strings") << strings << false;
  QList<TableVersion> versions = {{.label = u"x"_s, .icon = u"y"_s}};
  for (int i = 0; i < 60'000; ++i) {
    TableVersion version = {
        .language = "aaa", .region = "000", .density = i, .label = u"x"_s, .icon = u"y"_s};
    for (int k = 0, rest = i; k < 3; ++k, rest /= 26)
      version.language[k] = static_cast<char>('a' + rest % 26);
    versions << version;
  }
  QTest::newRow("many configurations") << makeTable(versions) << true;
  QTest::newRow("nearly as many") << makeTable(versions.mid(0, 5'000)) << false;
}

/// Whatever a file says, it costs neither much memory nor much time.
void TestBadgingSafety::memory() {
  QFETCH(QByteArray, table);
  QFETCH(bool, refused);
  const QString file = path(u"large.apk"_s);
  QVERIFY(
      writeParts(file, {{u"AndroidManifest.xml"_s, labelManifest()}, {u"resources.arsc"_s, table}}, refused));
  QElapsedTimer timer;
  timer.start();
  const Badging result = badging(kLimited + ours(), file);
  QVERIFY2(timer.elapsed() < 20'000, QByteArray::number(timer.elapsed()).constData());
  QCOMPARE(result.exitCode, refused ? 1 : 0);
  QCOMPARE(result.errors.isEmpty(), !refused);
}

QTEST_GUILESS_MAIN(TestBadgingSafety)
#include "tst_badging_safety.moc"
