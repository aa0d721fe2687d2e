#include "apk/obb_discovery.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// Makes the files in the folder; a name that ends in a slash is a folder.
void fill(const QString& folder, const QStringList& names) {
  QDir().mkpath(folder);
  for (const QString& name : names) {
    QFile file(folder + u'/' + name);
    QVERIFY(name.endsWith(u'/') ? QDir(folder).mkdir(name) : file.open(QIODevice::WriteOnly));
  }
}

}  // namespace

class ObbDiscoveryTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void cases_data() {
    QTest::addColumn<QString>("package");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("console");
    QTest::addColumn<int>("beeps");
    const QString found = u"\r\nFound OBB Files: \r\n"_s;
    QTest::newRow("a folder of its name")
        << u"a.b"_s << QStringList{u"a.b/"_s, u"a.b/main.10.obb"_s, u"a.b/main.2.OBB"_s, u"other.obb"_s}
        << found + u"main.2.OBB\r\nmain.10.obb\r\n"_s << 1;
    QTest::newRow("a folder without any")
        << u"a.b"_s << QStringList{u"a.b/"_s, u"a.b/readme.txt"_s, u"other.obb"_s} << QString() << 1;
    QTest::newRow("beside the package")
        << u"a.b"_s << QStringList{u"main.obb"_s, u"knob"_s, u"noobb"_s, u"sub/"_s, u"sub/deep.obb"_s}
        << found + u"main.obb\r\nnoobb\r\n"_s << 0;
    QTest::newRow("no package name: its own folder")
        << QString() << QStringList{u"main.obb"_s} << found + u"main.obb\r\n"_s << 1;
    QTest::newRow("nothing") << u"a.b"_s << QStringList{u"readme.txt"_s} << QString() << 0;
  }
  void cases() {
    QFETCH(QString, package);
    QFETCH(QStringList, files);
    MainWindowFixture window;
    const QString folder = window.filePath(u"games"_s);
    fill(folder, files);
    apkinfo& form = *window.form;
    form.ApkPath = QDir::toNativeSeparators(folder + u"/game.apk"_s);
    form.Label2->setCaption(package);
    form.Command4->setEnabled(false);
    FindObbFiles(form);
    QTEST(form.txtOutputs->Text(), "console");
    QTEST(window.desktop.beeps, "beeps");
    QCOMPARE(form.Command4->isEnabled(), window.desktop.beeps == 1);
  }

  void bounds() {
    MainWindowFixture window;
    const QString folder = window.filePath(u"games"_s);
    for (int i = 1; i <= 256; ++i) fill(folder, {u"%1.obb"_s.arg(i)});
    apkinfo& form = *window.form;
    form.Label2->setCaption(u"a.b"_s);
    form.ApkPath = QDir::toNativeSeparators(folder + u"/game.apk"_s);
    FindObbFiles(form);
    QCOMPARE(form.txtOutputs->Text(), QString());
    QFile::remove(folder + u"/256.obb"_s);
    FindObbFiles(form);
    QVERIFY(form.txtOutputs->Text().endsWith(u"\r\n254.obb\r\n255.obb\r\n"_s));
    // A bare name has no folder: what lies in the root or the working folder is not this package's.
    form.ApkPath = u"game.apk"_s;
    form.Label2->setCaption(u"etc"_s);
    const QString before = form.txtOutputs->Text();
    FindObbFiles(form);
    QCOMPARE(form.txtOutputs->Text(), before);
    QCOMPARE(window.desktop.beeps, 0);
  }
};

QTEST_MAIN(ObbDiscoveryTest)
#include "obb_discovery_test.moc"
