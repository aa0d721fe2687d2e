#include "apk/icon_extraction.h"

#include <zip.h>

#include <QBuffer>
#include <atomic>
#include <thread>

#include "monitor/device_watcher.h"
#include "support/files.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

constexpr qsizetype MiB = 1024 * 1024;

using Entries = QList<std::pair<QByteArray, QByteArray>>;

QByteArray icon(const QColor& color, const QSize& size = {48, 48}, const char* format = "png") {
  QImage image(size, QImage::Format_RGB32);
  image.fill(color);
  QBuffer file;
  image.save(&file, format);
  return file.data();
}

QByteArray archive(const Entries& entries, bool encrypted = false) {
  QTemporaryDir folder;
  const QString path = folder.filePath(u"x"_s);
  zip_t* made = zip_open(path.toUtf8().constData(), ZIP_CREATE, nullptr);
  for (const auto& [name, content] : entries) {
    zip_source_t* source = zip_source_buffer(made, content.constData(), quint64(content.size()), 0);
    const auto index = quint64(zip_file_add(made, name.constData(), source, 0));
    if (encrypted) zip_file_set_encryption(made, index, ZIP_EM_TRAD_PKWARE, "secret");
  }
  zip_close(made);
  return readFile(path);
}

/// A bomb: both headers claim 1 MiB for what inflates to 64.
QByteArray lyingArchive(const QByteArray& name) {
  QByteArray bytes = archive({{name, QByteArray(64 * MiB, '\0')}});
  const auto le = [](quint32 n) { return QByteArray(reinterpret_cast<const char*>(&n), 4); };
  return bytes.replace(le(64 * MiB), le(1 * MiB));
}

}  // namespace

class IconExtractionTest : public QObject {
  Q_OBJECT

  QTemporaryDir m_cache;
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<MainWindowFixture> m_window;

  apkinfo& form() { return *m_window->form; }
  Workbench& bench() { return m_window->bench; }
  QString at(const QString& name) const { return m_folder->filePath(name); }

 private Q_SLOTS:
  void initTestCase() { qputenv("XDG_CACHE_HOME", QFile::encodeName(m_cache.path())); }
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_window = std::make_unique<MainWindowFixture>();
  }
  void cleanup() { m_window.reset(); }

  void packages() {
    const QByteArray mipmap = "res/mipmap-mdpi/app_icon.png";
    const QByteArray drawable = "res/drawable-mdpi-v4/app_icon.png";
    const QByteArray mipmap4 = "res/mipmap-mdpi-v4/app_icon.png";
    const QColor none, own(Qt::red), first(Qt::cyan);
    const Entries fallbacks = {{mipmap4, icon(Qt::blue)}, {drawable, icon(Qt::green)}, {mipmap, icon(first)}};
    const auto withOwn = [&](const QByteArray& name) {
      return archive(Entries(fallbacks) << std::pair(name, icon(own)));
    };
    const auto only = [&](const QByteArray& content) { return archive({{"res/a.png", content}}); };
    QByteArray wrongChecksum = only(icon(own));
    QByteArray wrongDirectory = wrongChecksum;
    wrongChecksum[wrongChecksum.lastIndexOf("PK\1\2") + 16] ^= 1;
    wrongDirectory[wrongDirectory.lastIndexOf("PK\5\6") + 16] = char(200);
    QList<std::tuple<QString, QByteArray, QColor>> rows = {
        {u"res/a.png"_s, withOwn("res/a.png"), own},
        {u"res/A.png"_s, withOwn("RES/a.png"), own},
        {u"../../../a.png"_s, withOwn("../../../a.png"), own},
        {u"res/..:png"_s, withOwn("res/..:png"), first},
        {u"res/console.png"_s, withOwn("res/console.png"), own},
        {u"res/none.png"_s, archive(fallbacks), first},
        {QString(), archive(fallbacks.mid(0, 2)), Qt::green},
        {u"res/a.xml"_s, archive(fallbacks.mid(0, 1)), Qt::blue},
        {u"res/a.PNG"_s, withOwn("res/a.PNG"), first},
        {u"res/none.png"_s, only(icon(own)), none},
        {u"res/a.png"_s, only(icon(own, {48, 48}, "jpg")), QColor(254, 0, 0)},
        {u"res/a.png"_s, only("<svg xmlns='http://www.w3.org/2000/svg'/>"), none},
        {u"res/a.png"_s, only(icon(own).left(40)), none},
        {u"res/a.png"_s, only(icon(own, {4096, 1})), own},
        {u"res/a.png"_s, only(icon(own, {4097, 1})), none},
        {u"res/a.png"_s, archive({{"res/a.png", icon(own)}}, true), none},
        {u"res/a.png"_s, lyingArchive("res/a.png"), none},
        {u"res/a.png"_s, only(icon(own) + QByteArray(16 * MiB, '\0')), none},
        {u"res/a.png"_s, wrongChecksum, none},
        {u"res/a.png"_s, wrongDirectory, none},
        {u"res/a.png"_s, "text", none},
    };
    for (const char* device : {"con", "PRN", "aux.a", " nul ", "com1", "lpt9"}) {
      const QByteArray entry = QByteArray("res/") + device + ".png";
      rows.append({QString::fromLatin1(entry), withOwn(entry), first});
    }
    for (const auto& [named, package, shown] : rows) {
      init();
      LoadedPackage& loaded = bench().state.package;
      loaded.ApkPath = at(u"My GAME.APK"_s);
      loaded.ManifestFields[FieldIcon] = named;
      QVERIFY(writeFile(loaded.ApkPath, package));
      QCoro::waitFor(showIcon(loaded, form().Picture1));
      const QImage& drawn = form().Picture1->Picture();
      QVERIFY2((drawn.isNull() ? QColor() : drawn.pixelColor(0, 0)) == shown, qPrintable(named));
      QVERIFY(tree(m_folder->path()) == (QMap<QString, QByteArray>{{u"My GAME.APK"_s, package}}));
      QVERIFY(!loaded.RenameBackDue && !QFileInfo::exists(loaded.IconFilePath));
      // A folder made for the icon is removed; the program's own stays.
      const QDir iconFolder = QFileInfo(loaded.IconFilePath).dir();
      QCOMPARE(iconFolder.exists(), iconFolder == QDir(QCoreApplication::applicationDirPath()));
    }
  }

  void aStrangersArchiveIsLeftAlone() {
    DeviceWatcher watcher(bench(), [] { return true; });
    bench().state.package.ApkPath = at(u"x.APK"_s);
    const QMap<QString, QByteArray> files{
        {u"x.APK"_s, "package"}, {u"x.zip"_s, archive({{"res/mipmap-mdpi/app_icon.png", icon(Qt::red)}})}};
    for (const auto& [name, content] : files.asKeyValueRange()) QVERIFY(writeFile(at(name), content));
    QCoro::waitFor(showIcon(bench().state.package, form().Picture1));
    QCoro::waitFor(watcher.Timer3_Timer());
    QVERIFY(form().Picture1->Picture().isNull());
    QVERIFY(tree(m_folder->path()) == files);
  }

  void theWatcherGivesTheNameBack() {
    DeviceWatcher watcher(bench(), [] { return true; });
    const auto poll = [&watcher] { QCoro::waitFor(watcher.Timer3_Timer()); };
    LoadedPackage& loaded = bench().state.package;
    loaded.ApkPath = at(u"GAME.APK"_s);
    const QString zipPath = at(u"GAME.zip"_s);
    const QByteArray package = archive({{"res/mipmap-mdpi/app_icon.png", QByteArray(17 * MiB, 'x')}});
    QVERIFY(writeFile(loaded.ApkPath, package));
    // Somebody puts a file in the place of the package while it is away.
    bool squatted = false;
    for (int round = 0; round < 50 && !squatted; ++round) {
      std::atomic<bool> over = false;
      std::thread squatter([&] {
        while (!over && !QFileInfo::exists(zipPath)) {
        }
        squatted = QFile(loaded.ApkPath).open(QIODevice::WriteOnly | QIODevice::NewOnly);
      });
      QCoro::waitFor(showIcon(loaded, form().Picture1));
      over = true;
      squatter.join();
    }
    QVERIFY(squatted && loaded.RenameBackDue);
    poll();
    QCOMPARE(readFile(loaded.ApkPath), QByteArray());
    QVERIFY(QFile::remove(loaded.ApkPath));
    bench().state.WatcherHold = true;
    poll();
    QCOMPARE(tree(m_folder->path()).keys(), QStringList(u"GAME.zip"_s));
    bench().state.WatcherHold = false;
    poll();
    QVERIFY(tree(m_folder->path()) == (QMap<QString, QByteArray>{{u"GAME.APK"_s, package}}));
    // What somebody puts there later is no business of ours.
    QVERIFY(QFile::rename(loaded.ApkPath, zipPath));
    poll();
    QVERIFY(QFileInfo::exists(zipPath));
  }
};

QTEST_MAIN(IconExtractionTest)
#include "icon_extraction_test.moc"
