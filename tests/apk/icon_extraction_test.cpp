#include "apk/icon_extraction.h"

#include <zip.h>

#include <QBuffer>
#include <QDir>
#include <atomic>
#include <thread>

#include "monitor/device_watcher.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

constexpr qsizetype MiB = 1024 * 1024;

using Entries = QList<std::pair<QByteArray, QByteArray>>;

QByteArray picture(const QSize& size, const QColor& color, const char* format = "png") {
  QImage image(size, QImage::Format_RGB32);
  image.fill(color);
  QBuffer file;
  image.save(&file, format);
  return file.data();
}

QByteArray icon(const QColor& color) {
  return picture({48, 48}, color);
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
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A bomb: both headers claim 1 MiB for what inflates to 64.
QByteArray lyingArchive(const QByteArray& name) {
  QByteArray bytes = archive({{name, QByteArray(64 * MiB, '\0')}});
  const auto le = [](quint32 n) { return QByteArray(reinterpret_cast<const char*>(&n), 4); };
  return bytes.replace(le(64 * MiB), le(1 * MiB));
}

void write(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

QByteArray read(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
}

}  // namespace

class IconExtractionTest : public QObject {
  Q_OBJECT

  QTemporaryDir m_cache;
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<MainWindowFixture> m_window;

  apkinfo& form() { return *m_window->form; }
  QString at(const QString& name) const { return m_folder->filePath(name); }
  QStringList names() const { return QDir(m_folder->path()).entryList(QDir::Files); }

 private Q_SLOTS:
  void initTestCase() { qputenv("XDG_CACHE_HOME", QFile::encodeName(m_cache.path())); }
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_window = std::make_unique<MainWindowFixture>();
  }
  void cleanup() { m_window.reset(); }

  void packages_data() {
    QTest::addColumn<QString>("named");
    QTest::addColumn<QByteArray>("package");
    QTest::addColumn<QColor>("shown");

    const QByteArray mipmap = "res/mipmap-mdpi/app_icon.png";
    const QByteArray drawable = "res/drawable-mdpi-v4/app_icon.png";
    const QByteArray mipmap4 = "res/mipmap-mdpi-v4/app_icon.png";
    const QColor none;
    const QColor own(Qt::red);
    const Entries fallbacks = {
        {mipmap4, icon(Qt::blue)}, {drawable, icon(Qt::green)}, {mipmap, icon(Qt::cyan)}};
    const auto withOwn = [&](const QByteArray& name) {
      return archive(Entries(fallbacks) << std::pair(name, icon(own)));
    };
    const auto only = [&](const QByteArray& content) { return archive({{"res/a.png", content}}); };
    QTest::newRow("the one named") << u"res/a.png"_s << withOwn("res/a.png") << own;
    QTest::newRow("other capitals") << u"res/A.png"_s << withOwn("RES/a.png") << own;
    QTest::newRow("path leads out") << u"../../../a.png"_s << withOwn("../../../a.png") << own;
    QTest::newRow("no file name") << u"res/..:png"_s << withOwn("res/..:png") << QColor(Qt::cyan);
    QTest::newRow("first place") << u"res/none.png"_s << archive(fallbacks) << QColor(Qt::cyan);
    QTest::newRow("second place") << QString() << archive(fallbacks.mid(0, 2)) << QColor(Qt::green);
    QTest::newRow("third place") << u"res/a.xml"_s << archive(fallbacks.mid(0, 1)) << QColor(Qt::blue);
    QTest::newRow("ends in PNG") << u"res/a.PNG"_s << withOwn("res/a.PNG") << QColor(Qt::cyan);
    QTest::newRow("nowhere") << u"res/none.png"_s << only(icon(own)) << none;
    QTest::newRow("a JPEG") << u"res/a.png"_s << only(picture({48, 48}, own, "jpg")) << QColor(254, 0, 0);
    QTest::newRow("no picture") << u"res/a.png"_s << only("<svg xmlns='http://www.w3.org/2000/svg'/>")
                                << none;
    QTest::newRow("cut picture") << u"res/a.png"_s << only(icon(own).left(40)) << none;
    QTest::newRow("large") << u"res/a.png"_s << only(picture({4096, 1}, own)) << own;
    QTest::newRow("too large") << u"res/a.png"_s << only(picture({4097, 1}, own)) << none;
    QTest::newRow("encrypted") << u"res/a.png"_s << archive({{"res/a.png", icon(own)}}, true) << none;
    QTest::newRow("bomb") << u"res/a.png"_s << lyingArchive("res/a.png") << none;
    QTest::newRow("too long") << u"res/a.png"_s << only(icon(own) + QByteArray(16 * MiB, '\0')) << none;
    const QByteArray good = only(icon(own));
    QByteArray damaged = good;
    const qsizetype checksum = damaged.lastIndexOf("PK\1\2") + 16;
    damaged[checksum] = char(damaged[checksum] ^ 1);
    QTest::newRow("wrong checksum") << u"res/a.png"_s << damaged << none;
    QByteArray misled = good;
    misled[misled.lastIndexOf("PK\5\6") + 16] = char(200);
    QTest::newRow("wrong directory") << u"res/a.png"_s << misled << none;
    QTest::newRow("no archive") << u"res/a.png"_s << QByteArray("text") << none;
  }
  void packages() {
    QFETCH(QString, named);
    QFETCH(QByteArray, package);
    QFETCH(QColor, shown);
    form().ApkPath = at(u"My GAME.APK"_s);
    form().ManifestFields[9] = named;
    write(form().ApkPath, package);
    QCoro::waitFor(showIcon(form()));
    const QImage& drawn = form().Picture1->Picture();
    QCOMPARE(drawn.isNull() ? QColor() : drawn.pixelColor(0, 0), shown);
    QCOMPARE(names(), QStringList(u"My GAME.APK"_s));
    QCOMPARE(read(form().ApkPath), package);
    QVERIFY(!form().RenameBackDue);
    QVERIFY(!QFileInfo::exists(form().IconFilePath));
    // A folder of its own goes again; the program's stays.
    const QDir iconFolder = QFileInfo(form().IconFilePath).dir();
    QCOMPARE(iconFolder.exists(), iconFolder == QDir(QCoreApplication::applicationDirPath()));
  }

  void aStrangersArchiveIsLeftAlone() {
    DeviceWatcher watcher(form());
    form().ApkPath = at(u"x.APK"_s);
    write(form().ApkPath, "package");
    const QByteArray theirs = archive({{"res/mipmap-mdpi/app_icon.png", icon(Qt::red)}});
    write(at(u"x.zip"_s), theirs);
    QCoro::waitFor(showIcon(form()));
    QCoro::waitFor(watcher.Timer3_Timer());
    QVERIFY(form().Picture1->Picture().isNull());
    QCOMPARE(names(), QStringList({u"x.APK"_s, u"x.zip"_s}));
    QCOMPARE(read(form().ApkPath), "package");
    QCOMPARE(read(at(u"x.zip"_s)), theirs);
  }

  void theWatcherGivesTheNameBack() {
    DeviceWatcher watcher(form());
    form().ApkPath = at(u"GAME.APK"_s);
    const QString zipPath = at(u"GAME.zip"_s);
    const QByteArray package = archive({{"res/mipmap-mdpi/app_icon.png", QByteArray(17 * MiB, 'x')}});
    write(form().ApkPath, package);
    // Somebody puts a file in the place of the package while it is away.
    bool squatted = false;
    for (int round = 0; round < 50 && !squatted; ++round) {
      std::atomic<bool> over = false;
      std::thread squatter([&] {
        while (!over && !QFileInfo::exists(zipPath)) {
        }
        squatted = QFile(form().ApkPath).open(QIODevice::WriteOnly | QIODevice::NewOnly);
      });
      QCoro::waitFor(showIcon(form()));
      over = true;
      squatter.join();
    }
    QVERIFY(squatted && form().RenameBackDue);
    QCoro::waitFor(watcher.Timer3_Timer());
    QCOMPARE(read(form().ApkPath), QByteArray());
    QVERIFY(QFile::remove(form().ApkPath));
    form().WatcherHold = true;
    QCoro::waitFor(watcher.Timer3_Timer());
    QCOMPARE(names(), QStringList(u"GAME.zip"_s));
    form().WatcherHold = false;
    QCoro::waitFor(watcher.Timer3_Timer());
    QCOMPARE(names(), QStringList(u"GAME.APK"_s));
    QCOMPARE(read(form().ApkPath), package);
    // What somebody puts there later is no business of ours.
    QVERIFY(QFile::rename(form().ApkPath, zipPath));
    QCoro::waitFor(watcher.Timer3_Timer());
    QVERIFY(QFileInfo::exists(zipPath));
  }
};

QTEST_MAIN(IconExtractionTest)
#include "icon_extraction_test.moc"
