#include "install/uninstall_workflow.h"

#include "support/stand_in.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

const QString listing = u"shell pm list packages"_s;
const QString storageQuery = u"shell echo $EXTERNAL_STORAGE"_s;
const QString game = u"com.example.game"_s;
const QString uninstall = u"uninstall com.example.game"_s;
const QString keep = u"shell pm uninstall -k com.example.game"_s;
const QString removal = u"shell rm -r /sdcard/Android/obb/com.example.game"_s;

}  // namespace

class UninstallWorkflowTest : public QObject {
  Q_OBJECT

  using Answers = QMap<QString, QString>;

 private Q_SLOTS:
  void runs_data() {
    QTest::addColumn<bool>("keepData");
    QTest::addColumn<bool>("sure");
    QTest::addColumn<QString>("package");
    QTest::addColumn<Answers>("answers");
    QTest::addColumn<QStringList>("calls");  // behind the first one, which asks for the list
    QTest::addColumn<QString>("console");
    QTest::addColumn<int>("beeps");
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
    const auto row = [](const char* name, bool keepData, const QString& package, const Answers& answers,
                        const QStringList& calls, const QString& console, int beeps, bool sure = true) {
      QTest::newRow(name) << keepData << sure << package << answers << calls << console << beeps;
    };
    row("not there", true, u"com.no"_s, {}, {}, u"\r\nPackage com.no未安装\r\n"_s, 1);
    row("no name", true, {}, {}, {}, u"\r\nPackage 未安装\r\n"_s, 1);
    row("unfit name", false, u"."_s, {}, {}, unusable, 0);
    row("lost", false, game, {{uninstall, u"connect error"_s}}, {uninstall},
        trying.arg(game) + u"connect error"_s + lost, 1);
    row("keep, not sure", true, game, {}, {}, {}, 0, false);
    row("keep", true, game, {{keep, u"cannot Connect\n"_s}, {removal, u"rm: none\n"_s}},
        {keep, storageQuery, removal}, trying.arg(game) + u"cannot Connect\r\n"_s + removing.arg(game) + done,
        0);
    row("keep, lost", true, game, {{storageQuery, u"cannot Connect"_s}}, {keep, storageQuery},
        trying.arg(game) + removing.arg(game) + nothingRemoved + done + lost, 1);
    row("keep, unfit name", true, u"."_s, {}, {storageQuery},
        unusable + removing.arg(u"."_s) + nothingRemoved + done, 0);
  }
  void runs() {
    QFETCH(bool, keepData);
    QFETCH(bool, sure);
    QFETCH(QString, package);
    QFETCH(Answers, answers);
    QFETCH(QString, console);
    StandIn adb;
    adb.answer(listing, u"package:com.other\npackage:com.example.game.two\n"_s);
    adb.answer(storageQuery, u"/sdcard\n"_s);
    for (auto it = answers.begin(); it != answers.end(); ++it) adb.answer(it.key(), it.value());
    MainWindowFixture window;
    apkinfo& form = *window.form;
    const UninstallWorkflow workflow(form);
    loadPackage(form, package);
    window.desktop.answers = {sure ? BoxAnswer::Yes : BoxAnswer::No};
    QPushButton* button = keepData ? form.Command5 : form.Command4;
    button->click();
    button->click();  // refused while the first run stands
    QVERIFY(form.WatcherHold);
    QTRY_VERIFY(!form.turn().taken());
    QVERIFY(!form.WatcherHold && !window.module.CommandBusy);
    QCOMPARE(adb.calls().value(0), listing);
    QTEST(adb.calls().mid(1), "calls");
    QCOMPARE(form.txtOutputs->Text(), console);
    QTEST(window.desktop.beeps, "beeps");
    QCOMPARE(window.desktop.boxes.size(), keepData && !console.contains(u"未安装"_s) ? 1 : 0);
  }

  void aStoppedQuestionIsNoAnswer() {
    const StandIn adb;
    MainWindowFixture window;
    const UninstallWorkflow workflow(*window.form);
    loadPackage(*window.form, game);
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
