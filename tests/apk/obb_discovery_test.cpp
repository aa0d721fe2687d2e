#include "apk/obb_discovery.h"

#include <QTest>

#include "support/files.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

/// What the user is told of the expansion files beside a package.
class ObbDiscoveryTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void filesBesideThePackage() {
    const QString found = u"\r\nFound OBB Files: \r\n"_s;
    QStringList many;
    for (int i = 1; i <= 255; ++i) many << u"%1.obb"_s.arg(i);
    const struct {
      QString package;
      QStringList files;
      QString console;
      int beeps;
      QString name = u"games/game.apk"_s;
    } rows[] = {
        // a folder called like the package comes first
        {u"a.b"_s,
         {u"a.b/main.10.obb"_s, u"a.b/main.2.OBB"_s, u"other.obb"_s},
         found + u"main.2.OBB\r\nmain.10.obb\r\n"_s,
         1},
        {u"a.b"_s, {u"a.b/readme.txt"_s, u"other.obb"_s}, QString(), 1},
        {u"a.b"_s,
         {u"main.obb"_s, u"knob"_s, u"noobb"_s, u"sub/deep.obb"_s},
         found + u"main.obb\r\nnoobb\r\n"_s,
         0},
        {QString(), {u"main.obb"_s}, found + u"main.obb\r\n"_s, 1},  // no package name: its own folder
        {u"a.b"_s, {u"readme.txt"_s}, QString(), 0},
        {u"a.b"_s, many, found + many.join(u"\r\n"_s) + u"\r\n"_s, 0},
        {u"a.b"_s, many + QStringList{u"256.obb"_s}, QString(), 0},
        // A bare name has no folder: what lies in the root or the working folder is not this package's.
        {u"etc"_s, {}, QString(), 0, u"game.apk"_s},
    };
    for (const auto& [package, files, console, beeps, name] : rows) {
      MainWindowFixture window;
      for (const QString& file : files) QVERIFY(writeFile(window.filePath(u"games/"_s + file), "x"));
      LoadedPackage& loaded = window.bench.state.package;
      loaded.ApkPath = name.contains(u'/') ? QDir::toNativeSeparators(window.filePath(name)) : name;
      loaded.ManifestFields[FieldPackage] = package;
      window.bench.state.setMayUninstall(false);
      FindObbFiles(window.bench);
      QCOMPARE(window.form->txtOutputs->Text(), console);
      QCOMPARE(window.desktop.beeps, beeps);
      QCOMPARE(window.form->Command4->isEnabled(), beeps == 1 && !package.isEmpty());
    }
  }
};

QTEST_MAIN(ObbDiscoveryTest)
#include "obb_discovery_test.moc"
