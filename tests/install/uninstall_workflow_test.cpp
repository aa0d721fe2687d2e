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
  using Boxes = QList<BoxAnswer>;

 private Q_SLOTS:
  void runs_data() {
    QTest::addColumn<bool>("keepData");
    QTest::addColumn<Boxes>("boxes");  // what the user answers them
    QTest::addColumn<QString>("package");
    QTest::addColumn<Answers>("answers");
    QTest::addColumn<QStringList>("calls");  // after the first one, which asks for the list
    QTest::addColumn<QString>("console");
    QTest::addColumn<int>("beeps");
    QTest::addColumn<QString>("verdict");
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
    const QString notThere = u"\r\nPackage com.example.game未安装\r\n"_s;
    const QString success = u"Success\r\n"_s;
    const QString refusal = u"Failure [not a Success]\r\n"_s;
    const BoxAnswer yes = BoxAnswer::Yes;
    const BoxAnswer no = BoxAnswer::No;
    const auto row = [](const char* name, const Boxes& boxes, bool keepData, const QString& package,
                        const Answers& answers, const QStringList& calls, const QString& console, int beeps,
                        const QString& verdict) {
      QTest::newRow(name) << keepData << boxes << package << answers << calls << console << beeps << verdict;
    };
    row("not there", {}, true, u"com.no"_s, {}, {}, u"\r\nPackage com.no未安装\r\n"_s, 1,
        u"(The app is not installed on"_s);
    row("no list", {}, true, game, {{listing, u"adb: device unauthorized.\nLook into it.\n"_s}}, {},
        notThere + u"\r\nadb: device unauthorized.\r\nLook into it.\r\n"_s, 1,
        u"(Not uninstalled: The headset has not allowed"_s);
    row("no answer", {}, true, game, {{listing, QString()}}, {},
        notThere + u"\r\n头显没有回答 (The headset gave no answer)\r\n"_s, 1,
        u"(Not uninstalled: adb gave no answer"_s);
    row("no name", {}, true, {}, {}, {}, u"\r\nPackage 未安装\r\n"_s, 1, u"(The app is not installed on"_s);
    row("unfit name", {}, false, u"."_s, {}, {}, unusable, 0, u"(Not uninstalled: no usable package name)"_s);
    row("lost", {}, false, game, {{uninstall, u"connect error"_s}}, {uninstall},
        trying.arg(game) + u"connect error"_s + lost, 1, u"(Not uninstalled: The link"_s);
    row("keep, not sure", {no}, true, game, {}, {}, {}, 0, u""_s);
    row("keep", {yes}, true, game, {{keep, success}, {removal, u"rm: none\n"_s}},
        {keep, storageQuery, removal}, trying.arg(game) + success + removing.arg(game) + done, 0,
        u"(Uninstalled; the app's data stays"_s);
    row("keep, lost", {yes}, true, game, {{keep, success}, {storageQuery, u"cannot Connect"_s}},
        {keep, storageQuery}, trying.arg(game) + success + removing.arg(game) + nothingRemoved + done + lost,
        1, u"(Uninstalled; the app's data stays"_s);
    row("keep, refused, no", {yes, no}, true, game, {{keep, refusal}}, {keep, storageQuery},
        trying.arg(game) + refusal + done, 0, u"(Not uninstalled: The headset refused: not a Success"_s);
    row("keep, refused, yes", {yes, yes}, true, game, {{keep, refusal}}, {keep, storageQuery, removal},
        trying.arg(game) + refusal + removing.arg(game) + done, 0,
        u"(Not uninstalled: The headset refused"_s);
    row("keep, no reply", {yes}, true, game, {}, {keep, storageQuery}, trying.arg(game) + done, 0,
        u"(Not uninstalled: adb gave no"_s);
    row("keep, unfit name", {yes}, true, u"."_s, {}, {storageQuery}, unusable + done, 0,
        u"(Not uninstalled: no usable"_s);
  }
  void runs() {
    QFETCH(bool, keepData);
    QFETCH(Boxes, boxes);
    QFETCH(QString, package);
    QFETCH(Answers, answers);
    QFETCH(QString, console);
    StandIn adb;
    adb.answer(listing, u"package:com.other\npackage:com.example.game.two\n"_s);
    adb.answer(storageQuery, u"/sdcard\n"_s);
    for (auto it = answers.begin(); it != answers.end(); ++it) adb.answer(it.key(), it.value());
    MainWindowFixture window;
    apkinfo& form = *window.form;
    Workbench& bench = window.bench;
    UninstallWorkflow workflow(window.bench);
    connect(window.form->Command4, &QPushButton::clicked, &workflow, &UninstallWorkflow::Command4_Click);
    connect(window.form->Command5, &QPushButton::clicked, &workflow, &UninstallWorkflow::Command5_Click);
    window.bench.state.package.ManifestFields[FieldPackage] = package;
    window.desktop.answers = boxes;
    QPushButton* button = keepData ? form.Command5 : form.Command4;
    button->click();
    button->click();  // refused during the first run
    QVERIFY(bench.state.WatcherHold);
    QTRY_VERIFY(!bench.turn.taken());
    QVERIFY(!bench.state.WatcherHold && !window.bench.state.CommandBusy);
    QCOMPARE(adb.calls().value(0), listing);
    QTEST(adb.calls().mid(1), "calls");
    QCOMPARE(form.txtOutputs->Text(), console);
    QTEST(window.desktop.beeps, "beeps");
    QFETCH(QString, verdict);
    QVERIFY2(form.statusLine->text().contains(verdict), qPrintable(form.statusLine->text()));
    QCOMPARE(window.desktop.boxes.size(), boxes.size());
    if (boxes.size() < 2) return;
    QCOMPARE(window.desktop.boxes[1].preselected, BoxAnswer::No);
    QVERIFY(window.desktop.boxes[1].text.contains(u"Failure [not a Success]"_s));
  }

  void noKeyRemovesAndAStoppedQuestionIsNoAnswer() {
    const StandIn adb;
    MainWindowFixture window;
    UninstallWorkflow workflow(window.bench);
    connect(window.form->Command4, &QPushButton::clicked, &workflow, &UninstallWorkflow::Command4_Click);
    connect(window.form->Command5, &QPushButton::clicked, &workflow, &UninstallWorkflow::Command5_Click);
    window.bench.state.package.ManifestFields[FieldPackage] = game;
    window.form->show();
    QVERIFY(QTest::qWaitForWindowActive(window.form.get()));
    for (int key = Qt::Key_A; key <= Qt::Key_Z; ++key)
      QTest::keyClick(window.form.get(), static_cast<Qt::Key>(key), Qt::AltModifier);
    QTest::qWait(200);  // a button goes down for a moment before its key clicks it
    QCOMPARE(adb.calls(), QStringList());
    window.form->Command4->click();
    window.bench.turn.requestStop();
    QTRY_VERIFY(!window.bench.turn.taken());
    QVERIFY(!window.form->txtOutputs->Text().contains(u"未安装"_s) && !window.bench.state.WatcherHold);
  }
};

QTEST_MAIN(UninstallWorkflowTest)
#include "uninstall_workflow_test.moc"
