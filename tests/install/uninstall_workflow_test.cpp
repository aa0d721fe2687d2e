#include "install/uninstall_workflow.h"

#include <QFile>
#include <QRegularExpression>

#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

const QString listing = u"shell pm list packages"_s;
const QString storageQuery = u"shell echo $EXTERNAL_STORAGE"_s;

/// What the stand-in for adb answers, and what it was called with.
class Script {
 public:
  Script() { qputenv("ORVANTA_SCRIPT", QFile::encodeName(m_folder.path())); }

  void answer(QString arguments, const QString& text) {
    static const QRegularExpression other(u"[^a-zA-Z0-9.]"_s);
    QFile file(m_folder.filePath(arguments.replace(other, u"_"_s)));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
  }
  QStringList calls() const {
    QFile file(m_folder.filePath(u"calls"_s));
    if (!file.open(QIODevice::ReadOnly)) return {};
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
  }

 private:
  QTemporaryDir m_folder;
};

/// Start-up with a package of this name; the other steps do nothing.
class Steps : public StartupSteps {
 public:
  Steps(apkinfo& form, const QString& package) : m_form(form), m_package(package) {
    QCoro::waitFor(form.Form_Load(u"game.apk"_s, *this));
  }

 private:
  QCoro::Task<> showTip() override { co_return; }
  QCoro::Task<> runFirstRunDialog() override { co_return; }
  QCoro::Task<> readBadging() override {
    m_form.ManifestFields[1] = m_package;
    co_return;
  }
  QCoro::Task<> StorageReport() override { co_return; }
  QCoro::Task<> showIcon() override { co_return; }
  QCoro::Task<> showInstalledBuild() override { co_return; }

  apkinfo& m_form;
  QString m_package;
};

struct Case {
  const char* name;
  bool keepData;
  QString package;
  QMap<QString, QString> answers;
  BoxAnswer toWarning;
  QStringList calls;
  QString console;
  int beeps;
};

QString trying(const QString& package) {
  return u"\r\nTry connecting Device for APK-uninstall ("_s + package + u")\r\n"_s;
}

QString removing(const QString& package) {
  return u"\r\n删除设备上存在的文件夹：                               /Android/obb/"_s + package + u"\r\n"_s;
}

}  // namespace

class UninstallWorkflowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void runs() {
    const QString game = u"com.example.game"_s;
    const QString keep = u"shell pm uninstall -k com.example.game"_s;
    const QString remove = u"shell rm -r /sdcard/Android/obb/com.example.game"_s;
    const QMap<QString, QString> present = {
        {listing, u"package:com.other\npackage:com.example.game.two\n"_s}};
    const auto with = [&present](QMap<QString, QString> more) {
      more.insert(present);
      return more;
    };
    const QString nothingRemoved =
        u"\r\n没有删除设备上的文件夹：路径不明确 (Nothing was removed on the device: the path is not certain)\r\n"_s;
    const QString unusable =
        u"\r\n包名不可用，不卸载 (No usable package name: nothing is uninstalled): .\r\n"_s;
    const BoxAnswer yes = BoxAnswer::Yes;
    const Case cases[] = {
        {"not there",
         false,
         u"com.missing"_s,
         present,
         yes,
         {listing},
         u"\r\nPackage com.missing未安装\r\n"_s,
         1},
        {"keep, not there",
         true,
         u"com.missing"_s,
         present,
         yes,
         {listing},
         u"\r\nPackage com.missing未安装\r\n"_s,
         1},
        {"no device",
         false,
         game,
         {{listing, u"error: no devices/emulators found\n"_s}},
         yes,
         {listing},
         u"\r\nPackage com.example.game未安装\r\n"_s,
         1},
        {"no name", true, QString(), present, yes, {listing}, u"\r\nPackage 未安装\r\n"_s, 1},
        {"part of a longer name, refused",
         false,
         game,
         with({{u"uninstall com.example.game"_s, u"Failure [DELETE_FAILED_INTERNAL_ERROR]\n"_s}}),
         yes,
         {listing, u"uninstall com.example.game"_s},
         trying(game) + u"Failure [DELETE_FAILED_INTERNAL_ERROR]\r\n"_s,
         0},
        {"connection lost",
         false,
         game,
         with({{u"uninstall com.example.game"_s, u"connect error"_s}}),
         yes,
         {listing, u"uninstall com.example.game"_s},
         trying(game) + u"connect error\r\nConnection Error\r\n"_s,
         1},
        {"other capitals",
         false,
         game,
         with({{u"uninstall com.example.game"_s, u"Cannot connect"_s}}),
         yes,
         {listing, u"uninstall com.example.game"_s},
         trying(game) + u"Cannot connect"_s,
         0},
        {"unfit name", false, u"."_s, present, yes, {listing}, trying(u"."_s) + unusable, 0},
        {"keep, answered No", true, game, present, BoxAnswer::No, {listing}, QString(), 0},
        {"keep",
         true,
         game,
         with({{keep, u"cannot Connect\n"_s},
               {storageQuery, u"/sdcard\n"_s},
               {remove, u"rm: No such file\n"_s}}),
         yes,
         {listing, keep, storageQuery, remove},
         trying(game) + u"cannot Connect\r\n"_s + removing(game) + u"\r\n完毕！"_s,
         0},
        {"keep, connection lost",
         true,
         game,
         with({{storageQuery, u"cannot Connect"_s}}),
         yes,
         {listing, keep, storageQuery},
         trying(game) + removing(game) + nothingRemoved + u"\r\n完毕！\r\nConnection Error\r\n"_s,
         1},
        {"keep, unfit name",
         true,
         u"."_s,
         with({{storageQuery, u"/sdcard\n"_s}}),
         yes,
         {listing, storageQuery},
         trying(u"."_s) + unusable + removing(u"."_s) + nothingRemoved + u"\r\n完毕！"_s,
         0},
    };
    for (const Case& one : cases) {
      Script script;
      for (auto it = one.answers.begin(); it != one.answers.end(); ++it) script.answer(it.key(), it.value());
      MainWindowFixture window;
      apkinfo& form = *window.form;
      const Steps loaded(form, one.package);
      const UninstallWorkflow workflow(form);
      window.desktop.answers = {one.toWarning};
      QPushButton* button = one.keepData ? form.Command5 : form.Command4;
      button->click();
      button->click();  // while the first run stands
      QVERIFY(form.WatcherHold);
      QTRY_VERIFY2(!form.turn().taken(), one.name);
      QVERIFY2(!form.WatcherHold && !window.module.CommandBusy, one.name);
      QCOMPARE(script.calls(), one.calls);
      QCOMPARE(form.txtOutputs->Text(), one.console);
      QCOMPARE(window.desktop.beeps, one.beeps);
      const bool asked = one.keepData && one.calls.size() + (one.toWarning == BoxAnswer::No) > 1;
      QCOMPARE(window.desktop.boxes.size(), asked ? 1 : 0);
    }
  }

  void theWarning() {
    Script script;
    script.answer(listing, u"package:com.example.game\n"_s);
    MainWindowFixture window;
    const Steps loaded(*window.form, u"com.example.game"_s);
    const UninstallWorkflow workflow(*window.form);
    window.desktop.answers = {BoxAnswer::No};
    window.form->Command5->click();
    QTRY_VERIFY(!window.form->turn().taken());
    const MessageBox& warning = window.desktop.boxes.first();
    QCOMPARE(warning.title, u"卸载并保留数据"_s);
    QCOMPARE(warning.text,
             u"只能在以后重新安装APK有相同的签名时\r\n"
             "没有正确的签名，APK将无法在以后重新安装！！！\r\n\r\n你确定吗？"_s);
    QVERIFY(warning.buttons == BoxButtons::YesNo);
  }

  void aStoppedQuestionIsNoAnswer() {
    Script script;
    MainWindowFixture window;
    const Steps loaded(*window.form, u"com.example.game"_s);
    const UninstallWorkflow workflow(*window.form);
    window.form->Command4->click();
    window.form->turn().requestStop();
    QTRY_VERIFY(!window.form->turn().taken());
    QVERIFY(!window.form->txtOutputs->Text().contains(u"未安装"_s) && !window.form->WatcherHold);
  }
};

QTEST_MAIN(UninstallWorkflowTest)
#include "uninstall_workflow_test.moc"
