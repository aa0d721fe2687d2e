#include <QCoroTask>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <cstdio>
#include <string_view>

#include "app/application.h"
#include "operations/local_copy.h"
#include "platform/script_place.h"
#include "platform/store_paths.h"
#include "support/files.h"
#include "ui/own_settings.h"
#include "ui/recording_desktop.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

int sayAndWait(const QString& word) {
  std::puts(qPrintable(word));
  std::fflush(stdout);
  return std::getchar();
}

/// Begins one thing in the current folder, says so, and waits.
int beginAndWait(std::string_view thing) {
  if (thing == "name") {
    BorrowedName name;
    return name.take(u"x.APK"_s, u"x.zip"_s) ? sayAndWait(u"begun"_s) : 1;
  }
  if (thing == "noted") {
    const JournalEntry note(
        {{u"kind"_s, u"copy"_s},
         {u"place"_s, QDir::toNativeSeparators(QDir::current().filePath(u"some.app"_s))},
         {u"earlier"_s, QDir::toNativeSeparators(QDir::current().filePath(u"some.app.old"_s))},
         {u"mark"_s, u"folder 8"_s},
         {u"step"_s, u"noted"_s}});
    return sayAndWait(u"begun"_s);
  }
  if (thing == "file" || thing == "folder") {
    LocalCopy copy(u"some.app"_s);
    if (!copy.begin().isEmpty()) return 1;
    const bool made = writeFile(thing == "folder" ? copy.place() + u"/a"_s : copy.place(), "half");
    return made && copy.noteArrival() ? sayAndWait(u"begun"_s) : 1;
  }
  const ScriptPlace script(u"exit\n"_s);
  const IconFolder icons({u"b.png"_s, u"a.png"_s});
  return writeFile(icons.path() + u"/a.png"_s, "picture") ? sayAndWait(icons.path()) : 1;
}

}  // namespace

/// A run dies in the middle of something: what the next start does.
class SetRightTest : public QObject {
  Q_OBJECT

  const QByteArray m_temp = qgetenv("TMP");
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<OwnSettings> m_settings;
  std::unique_ptr<QProcess> m_other;
  QString m_word;  // what the other process said

  QString at(const QString& name) const { return QDir::toNativeSeparators(m_folder->filePath(name)); }

  /// Another process that is in the middle of `thing`.
  void letBegin(const QString& thing) {
    m_other = std::make_unique<QProcess>();
    m_other->setWorkingDirectory(at(u"p"_s));
    m_other->start(QCoreApplication::applicationFilePath(), {u"begin"_s, thing});
    QVERIFY(m_other->waitForReadyRead());
    m_word = QString::fromUtf8(m_other->readAll()).trimmed();
  }
  void die() {
    m_other->kill();
    QVERIFY(m_other->waitForFinished());
  }

  void changeNotes(const QRegularExpression& from, const QString& to) const {
    QDir folder(at(u"state/Orvanta/journal"_s));
    for (const QString& name : folder.entryList({u"*.json"_s}))
      QVERIFY(writeFile(folder.filePath(name),
                        QString::fromUtf8(readFile(folder.filePath(name))).replace(from, to).toUtf8()));
  }

  /// What the console says after a start with `commandText`.
  static QString start(const QString& commandText = {}) {
    RecordingDesktop desktop;
    Application application(desktop, [] {});
    application.start(commandText);
    (void)QTest::qWaitFor([&] { return application.mainWindow().isVisible(); }, 20'000);
    return application.mainWindow().txtOutputs->Text();
  }

  QString in(const QString& folder) const { return told(tree(at(folder))); }

 private Q_SLOTS:
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    for (const QString& folder : {u"cache"_s, u"temp"_s}) QVERIFY(QDir().mkpath(at(folder)));
    m_settings = std::make_unique<OwnSettings>(at(u"config"_s));
    qputenv("XDG_STATE_HOME", at(u"state"_s).toUtf8());
    qputenv("LOCALAPPDATA", at(u"state"_s).toUtf8());
    qputenv("XDG_CACHE_HOME", at(u"cache"_s).toUtf8());
    for (const char* name : {"XDG_RUNTIME_DIR", "TMP"}) qputenv(name, at(u"temp"_s).toUtf8());
    QFile(at(u"temp"_s)).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    SettingsStore().write(u"Explentry"_s, u"on"_s);
    QVERIFY(writeFile(at(u"p/x.APK"_s), "package"));
  }
  void cleanup() {
    if (m_other) m_other->kill();
    if (m_other) m_other->waitForFinished();
    m_other.reset();
    m_settings.reset();
    m_folder.reset();
    qputenv("TMP", m_temp);
  }

  void theNextStart() {
    const QString back = u"已恢复安装包"_s, stays = u"请自行改名"_s, gone = u"没有再改名"_s;
    const QString partial = u"已有的部分保存为"_s, earlier = u"原有的备份已恢复"_s;
    const struct {
      QString thing;
      QString before;     // a copy from an earlier day
      QString meanwhile;  // between the death and the start: "a>b" is renamed, "a=x" written, "a" removed
      QStringList said;
      QString after;
    } rows[] = {
        {u"name"_s, u""_s, u""_s, {back}, u"x.APK=package"_s},
        {u"name"_s, u""_s, u"x.zip>x.APK"_s, {}, u"x.APK=package"_s},
        {u"name"_s, u""_s, u"x.APK=new"_s, {stays}, u"x.APK=new x.zip=package"_s},
        {u"name"_s, u""_s, u"x.zip>y.zip x.zip=package"_s, {gone}, u"x.zip=package y.zip=package"_s},
        {u"name"_s, u""_s, u"x.zip=archive"_s, {gone}, u"x.zip=archive"_s},
        {u"name"_s, u""_s, u"x.zip>y.zip"_s, {gone}, u"y.zip=package"_s},
        {u"file"_s, u""_s, u""_s, {partial}, u"some.app.partial=half"_s},
        {u"file"_s, u"some.app"_s, u""_s, {partial, earlier}, u"some.app=earlier some.app.partial=half"_s},
        {u"folder"_s, u""_s, u""_s, {partial}, u"some.app.partial/a=half"_s},
        {u"folder"_s,
         u"some.app/a"_s,
         u""_s,
         {partial, earlier},
         u"some.app.partial/a=half some.app/a=earlier"_s},
        {u"file"_s, u"some.app"_s, u"some.app"_s, {earlier}, u"some.app=earlier"_s},
        // over already, not yet begun, and the earlier copy is no more
        {u"folder"_s,
         u"some.app/a"_s,
         u"some.app>some.app.partial some.app.old>some.app"_s,
         {},
         u"some.app.partial/a=half some.app/a=earlier"_s},
        {u"file"_s, u"some.app"_s, u"some.app some.app.old>some.app"_s, {}, u"some.app=earlier"_s},
        {u"file"_s, u"some.app"_s, u"some.app.old"_s, {partial}, u"some.app.partial=half"_s},
        // A disk that numbers its files anew: the marks are those of others.
        {u"name"_s, u""_s, u"*"_s, {back}, u"x.APK=package"_s},
        {u"folder"_s,
         u"some.app/a"_s,
         u"*"_s,
         {partial, earlier},
         u"some.app.partial/a=half some.app/a=earlier"_s},
        {u"noted"_s, u"some.app/a"_s, u"*"_s, {}, u"some.app/a=earlier"_s},
    };
    for (const auto& [thing, before, meanwhile, said, after] : rows) {
      init();
      if (thing != u"name"_s) QVERIFY(QFile::remove(at(u"p/x.APK"_s)));
      if (!before.isEmpty()) QVERIFY(writeFile(at(u"p/"_s + before), "earlier"));
      letBegin(thing);
      const QString begun = in(u"p"_s);
      // Not while it lives.
      QCOMPARE(start(), QString());
      if (thing != u"name"_s) QVERIFY(!LocalCopy(at(u"p/some.app"_s)).begin().isEmpty());
      QCOMPARE(in(u"p"_s), begun);
      die();
      for (const QString& change : meanwhile.split(u' ', Qt::SkipEmptyParts)) {
        if (change == u'*') {
          changeNotes(QRegularExpression(u"(folder|file) [0-9/.]+"_s), u"\\1 7"_s);
          continue;
        }
        const auto path = [&](const QString& sign, int part) {
          return at(u"p/"_s + change.section(sign, part, part));
        };
        if (change.contains(u'=')) {
          QVERIFY(writeFile(path(u"="_s, 0), change.section(u'=', 1).toUtf8()));
        } else {
          QVERIFY(change.contains(u'>') ? QDir().rename(path(u">"_s, 0), path(u">"_s, 1))
                                        : QFile::remove(at(u"p/"_s + change)));
        }
      }
      const QString console = start();
      QCOMPARE(console.count(u"上次运行中断"_s), said.size());
      for (const QString& words : said) QVERIFY2(console.contains(words), qPrintable(console));
      if (said.contains(back)) QVERIFY(console.contains(at(u"p/x.zip"_s) + u" → "_s + at(u"p/x.APK"_s)));
      QCOMPARE(in(u"p"_s), after);
      QCOMPARE(start(), QString());
      QCOMPARE(in(u"state/Orvanta/journal"_s), QString());
      cleanup();
    }
  }

  void whatTheUserPutsAtThePlaceIsHis() {
    letBegin(u"file"_s);
    die();
    // Made while the other still lies there: a new file can get the number of one that is gone.
    QVERIFY(writeFile(at(u"p/mine"_s), "mine") && QFile::remove(at(u"p/some.app"_s)));
    QVERIFY(QFile::rename(at(u"p/mine"_s), at(u"p/some.app"_s)));
    for (int i = 0; i < 2; ++i) QVERIFY(start().contains(u"无法确定"_s));
    QCOMPARE(in(u"p"_s), u"some.app=mine x.APK=package"_s);
    QVERIFY(!LocalCopy(at(u"p/some.app"_s)).begin().isEmpty());
    QVERIFY(QFile::remove(at(u"p/some.app"_s)));
    QCOMPARE(start(), QString());
    QCOMPARE(in(u"state/Orvanta/journal"_s), QString());
  }

  void aHalfCopyThatCouldNotBeRenamedIsNotForgotten() {
    LocalCopy copy(at(u"p/some.app"_s));
    QVERIFY(copy.begin().isEmpty() && writeFile(copy.place(), "half") && copy.noteArrival());
    // All names for it are taken.
    const auto partial = [&](int i) {
      return copy.place() + u".partial"_s + (i > 1 ? QString::number(i) : QString());
    };
    for (int i = 1; i < 1000; ++i) QVERIFY(writeFile(partial(i), "x"));
    QVERIFY(QCoro::waitFor(copy.undo()).contains(u"不完整"_s));
    QVERIFY(start().contains(u"这个备份不完整"_s));
    for (int i = 1; i < 1000; ++i) QFile::remove(partial(i));
    QVERIFY(start().contains(u"已有的部分保存为"_s));
    QCOMPARE(in(u"p"_s), u"some.app.partial=half x.APK=package"_s);
  }

  void aDiskThatIsNotThereIsWaitedFor() {
    letBegin(u"name"_s);
    die();
    // A process that has ended can hold its folder for a moment on Windows.
    QVERIFY(QTest::qWaitFor([this] { return QDir().rename(at(u"p"_s), at(u"away"_s)); }, 20'000));
    QCOMPARE(start(), QString());
    QVERIFY(QDir().rename(at(u"away"_s), at(u"p"_s)));
    QVERIFY(start().contains(u"已恢复"_s));
    QCOMPARE(in(u"p"_s), u"x.APK=package"_s);
  }

  void thePackageIsOpenedByEitherName() {
    for (const QString& name : {u"p/x.APK"_s, u"p/x.zip"_s}) {
      letBegin(u"name"_s);
      die();
      RecordingDesktop desktop;
      Application application(desktop, [] {});
      application.start(at(name));
      const apkinfo& form = application.mainWindow();
      QVERIFY(QTest::qWaitFor([&] { return form.isVisible(); }, 20'000));
      QCOMPARE(application.bench().state.package.ApkPath, at(u"p/x.APK"_s));
      QVERIFY(form.txtOutputs->Text().contains(u"已恢复"_s));
      QCOMPARE(in(u"p"_s), u"x.APK=package"_s);
    }
  }

  void leftovers() {
    QVERIFY(writeFile(at(u"temp/mine"_s), "1"));
    letBegin(u"rest"_s);
    const QString picture = m_word + u"/a.png"_s;
    QCOMPARE(start(), QString());
    QVERIFY(QFileInfo::exists(picture) && in(u"temp"_s) != u"mine=1"_s);
    die();
    QVERIFY(start().contains(u"已删除留下的临时文件"_s));
    QVERIFY(!QFileInfo::exists(picture));
    QCOMPARE(in(u"temp"_s), u"mine=1"_s);
    QVERIFY(!in(u"cache"_s).contains(u"icon-"_s));
    QCOMPARE(in(u"state/Orvanta/journal"_s), QString());
  }
};

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc > 2 && argv[1] == std::string_view("begin")) return beginAndWait(argv[2]);
  SetRightTest test;
  return QTest::qExec(&test, argc, argv);
}
#include "set_right_test.moc"
