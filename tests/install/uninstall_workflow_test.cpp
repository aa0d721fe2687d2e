#include "install/uninstall_workflow.h"

#include "support/stand_in.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

const QString listing = u"shell pm list packages"_s;
const QString storageQuery = u"shell echo $EXTERNAL_STORAGE"_s;

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

}  // namespace

class UninstallWorkflowTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void runs() {
    const QString game = u"com.example.game"_s;
    const QString uninstall = u"uninstall "_s + game;
    const QString keep = u"shell pm uninstall -k "_s + game;
    const QString remove = u"shell rm -r /sdcard/Android/obb/"_s + game;
    const QString there = u"package:com.other\npackage:com.example.game.two\n"_s;
    const QString trying = u"\r\nTry connecting Device for APK-uninstall (%1)\r\n"_s;
    const QString unusable =
        trying.arg(u"."_s) +
        u"\r\n包名不可用，不卸载 (No usable package name: nothing is uninstalled): .\r\n"_s;
    const QString removing =
        u"\r\n删除设备上存在的文件夹：                               /Android/obb/%1\r\n"_s;
    const QString nothingRemoved =
        u"\r\n没有删除设备上的文件夹：路径不明确 (Nothing was removed on the device: the path is not certain)\r\n"_s;
    const QString done = u"\r\n完毕！"_s;
    const QString lost = u"\r\nConnection Error\r\n"_s;
    const auto yes = BoxAnswer::Yes;
    const Case cases[] = {
        {"not there", true, u"com.no"_s, {}, yes, {listing}, u"\r\nPackage com.no未安装\r\n"_s, 1},
        {"no name", true, QString(), {}, yes, {listing}, u"\r\nPackage 未安装\r\n"_s, 1},
        {"unfit name", false, u"."_s, {}, yes, {listing}, unusable, 0},
        {"refused",
         false,
         game,
         {{uninstall, u"Failure\n"_s}},
         yes,
         {listing, uninstall},
         trying.arg(game) + u"Failure\r\n"_s,
         0},
        {"lost",
         false,
         game,
         {{uninstall, u"connect error"_s}},
         yes,
         {listing, uninstall},
         trying.arg(game) + u"connect error"_s + lost,
         1},
        {"keep, No", true, game, {}, BoxAnswer::No, {listing}, QString(), 0},
        {"keep",
         true,
         game,
         {{keep, u"cannot Connect\n"_s}, {storageQuery, u"/sdcard\n"_s}, {remove, u"rm: none\n"_s}},
         yes,
         {listing, keep, storageQuery, remove},
         trying.arg(game) + u"cannot Connect\r\n"_s + removing.arg(game) + done,
         0},
        {"keep, lost",
         true,
         game,
         {{storageQuery, u"cannot Connect"_s}},
         yes,
         {listing, keep, storageQuery},
         trying.arg(game) + removing.arg(game) + nothingRemoved + done + lost,
         1},
        {"keep, unfit name",
         true,
         u"."_s,
         {{storageQuery, u"/sdcard\n"_s}},
         yes,
         {listing, storageQuery},
         unusable + removing.arg(u"."_s) + nothingRemoved + done,
         0},
    };
    for (const Case& one : cases) {
      qInfo("%s", one.name);
      StandIn adb;
      adb.answer(listing, there);
      for (auto it = one.answers.begin(); it != one.answers.end(); ++it) adb.answer(it.key(), it.value());
      MainWindowFixture window;
      apkinfo& form = *window.form;
      const UninstallWorkflow workflow(form);
      loadPackage(form, one.package);
      window.desktop.answers = {one.toWarning};
      QPushButton* button = one.keepData ? form.Command5 : form.Command4;
      button->click();
      button->click();  // refused while the first run stands
      QVERIFY(form.WatcherHold);
      QTRY_VERIFY(!form.turn().taken());
      QVERIFY(!form.WatcherHold && !window.module.CommandBusy);
      QCOMPARE(adb.calls(), one.calls);
      QCOMPARE(form.txtOutputs->Text(), one.console);
      QCOMPARE(window.desktop.beeps, one.beeps);
      const QString warning =
          u"卸载并保留数据|只能在以后重新安装APK有相同的签名时\r\n没有正确的签名，APK将无法在以后重新安装！！！\r\n\r\n你确定吗？"_s;
      QStringList asked;
      for (const MessageBox& box : window.desktop.boxes) asked << box.title + u'|' + box.text;
      QCOMPARE(asked,
               one.keepData && !one.console.contains(u"未安装"_s) ? QStringList(warning) : QStringList());
    }
  }

  void aStoppedQuestionIsNoAnswer() {
    const StandIn adb;
    MainWindowFixture window;
    const UninstallWorkflow workflow(*window.form);
    loadPackage(*window.form, u"com.example.game"_s);
    window.form->Command4->click();
    window.form->turn().requestStop();
    QTRY_VERIFY(!window.form->turn().taken());
    QVERIFY(!window.form->txtOutputs->Text().contains(u"未安装"_s) && !window.form->WatcherHold);
  }

 private:
  static void loadPackage(apkinfo& form, const QString& package) {
    form.Label2->setCaption(package);
    form.objDOS = std::make_unique<DOSOutputs>(form, &form.turn());
    connect(form.objDOS.get(), &DOSOutputs::ReceiveOutputs, &form, [&form](const QString& CommandOutputs) {
      if (!form.module().CommandBusy) form.txtOutputs->append(CommandOutputs);
    });
  }
};

QTEST_MAIN(UninstallWorkflowTest)
#include "uninstall_workflow_test.moc"
