#include "desktop/first_run.h"

#include <QTest>

#include "desktop/file_manager_entry.h"
#include "desktop/tip.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// Notes each write and how many boxes stood before it; the write whose number is `failing` fails.
class NotedEntry : public FileManagerEntry {
 public:
  NotedEntry(const RecordingDesktop& desktop, int failing) : m_desktop(desktop), m_failing(failing) {}
  QStringList writes;

  bool writeCommand() override { return note(1); }
  QCoro::Task<> writeAppliesTo() override {
    note(2);
    co_return;
  }
  bool writeIcon() override { return note(3); }

 private:
  bool note(int number) {
    writes << u"%1 after %2 boxes"_s.arg(number).arg(m_desktop.boxes.size());
    return number != m_failing;
  }
  const RecordingDesktop& m_desktop;
  int m_failing;
};

const QString first =
    u"i Orvanta将自身集成到资源管理器中， 通过右键单击APK文件，可以使用Orvanta来安装该文件。\r\r"
    "在确认资源管理器集成之前，请将Orvanta的目录复制到一个永久磁盘位置 [Orvanta]"_s;
const QString question = u"? 是否在鼠标右键菜单中集成Orvanta？ [资源管理器集成]"_s;
const QString failure = u". 错误：也许没有管理员权限！ [Orvanta]"_s;
const QString done = u"i 右键单击APK文件，然后选择“install” [Orvanta]"_s;

/// A box in short: icon or buttons, text, title.
QString shortForm(const MessageBox& box) {
  QChar sign = box.icon == BoxIcon::None ? u'.' : box.icon == BoxIcon::Information ? u'i' : u'!';
  if (box.buttons == BoxButtons::YesNo && box.icon == BoxIcon::None) sign = u'?';
  return sign + u' ' + box.text + u" ["_s + box.title + u']';
}

}  // namespace

class FirstRunTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyWayThrough_data() {
    QTest::addColumn<bool>("yes");
    QTest::addColumn<int>("failing");
    QTest::addColumn<QStringList>("writes");
    QTest::addColumn<QStringList>("boxes");
    QTest::addColumn<QStringList>("settings");  // Explentry, Grant, tooltip
    QTest::addColumn<int>("beeps");
    const QString w1 = u"1 after 2 boxes"_s;
    const QString w2 = u"2 after 2 boxes"_s;
    const QString w3 = u"3 after 2 boxes"_s;
    const QStringList untouched{u"off"_s, u"on"_s, u"off"_s};
    const QStringList made{u"on"_s, u"off"_s, u"on"_s};
    QTest::newRow("no") << false << 0 << QStringList() << QStringList{first, question} << untouched << 0;
    QTest::newRow("first write fails")
        << true << 1 << QStringList{w1} << QStringList{first, question, failure} << untouched << 0;
    QTest::newRow("second write fails")
        << true << 2 << QStringList{w1, w2, w3} << QStringList{first, question, done} << made << 1;
    QTest::newRow("third write fails")
        << true << 3 << QStringList{w1, w2, w3} << QStringList{first, question, failure}
        << QStringList{u"off"_s, u"off"_s, u"off"_s} << 0;
    QTest::newRow("made") << true << 0 << QStringList{w1, w2, w3} << QStringList{first, question, done}
                          << made << 1;
  }
  void everyWayThrough() {
    QFETCH(bool, yes);
    QFETCH(int, failing);
    MainWindowFixture window;
    const std::pair<QString, QString> before[] = {
        {u"Explentry"_s, u"off"_s}, {u"Grant"_s, u"on"_s}, {u"tooltip"_s, u"off"_s}};
    for (const auto& [section, value] : before) window.settings->write(section, value);
    window.desktop.answers = {BoxAnswer::Ok, yes ? BoxAnswer::Yes : BoxAnswer::No};
    NotedEntry entry(window.desktop, failing);
    QCoro::waitFor(FirstRun(*window.form, entry));

    QTEST(entry.writes, "writes");
    QStringList boxes;
    for (const MessageBox& box : window.desktop.boxes) boxes << shortForm(box);
    QTEST(boxes, "boxes");
    QStringList settings;
    for (const auto& [section, value] : before) settings << window.settings->read(section, u"(none)"_s);
    QTEST(settings, "settings");
    QTEST(window.desktop.beeps, "beeps");
    QCOMPARE(window.ends, 1);
  }

  void tip_data() {
    QTest::addColumn<bool>("checked");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("tooltip");
    QTest::newRow("read") << false << int(Qt::Key_Return) << u"on"_s;
    QTest::newRow("not again") << true << int(Qt::Key_Return) << u"off"_s;
    QTest::newRow("closed without the button") << true << int(Qt::Key_Escape) << u"on"_s;
  }
  void tip() {
    QFETCH(bool, checked);
    QFETCH(int, key);
    MainWindowFixture window;
    window.settings->write(u"tooltip"_s, u"on"_s);
    Form7 form(*window.settings);
    const auto closed = form.showModal();
    QVERIFY(QTest::qWaitForWindowExposed(&form));
    QVERIFY(form.Label1->height() >= form.Label1->heightForWidth(form.Label1->width()));
    form.Check1->setChecked(checked);
    QTest::keyClick(&form, static_cast<Qt::Key>(key));
    QTRY_VERIFY(closed.isReady());
    QTEST(window.settings->read(u"tooltip"_s, u"(none)"_s), "tooltip");
  }
};

QTEST_MAIN(FirstRunTest)
#include "first_run_test.moc"
