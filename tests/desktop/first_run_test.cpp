#include "desktop/first_run.h"

#include <QTest>

#include "desktop/file_manager_entry.h"
#include "desktop/tip.h"
#include "ui/main_window_fixture.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// Notes the writes; the one whose number is `failing` fails.
class NotedEntry : public FileManagerEntry {
 public:
  NotedEntry(const RecordingDesktop& desktop, int failing) : m_desktop(desktop), m_failing(failing) {}
  QString writes;

  bool writeCommand() override { return note(1); }
  QCoro::Task<> writeAppliesTo() override {
    note(2);
    co_return;
  }
  bool writeIcon() override { return note(3); }

 private:
  bool note(int number) {
    // Nothing is written before the user has been told, and has answered.
    if (m_desktop.boxes.size() == 2) writes += QString::number(number);
    return number != m_failing;
  }
  const RecordingDesktop& m_desktop;
  int m_failing;
};

}  // namespace

class FirstRunTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void everyWayThrough() {
    const QString question = u"是否在鼠标右键菜单中集成Orvanta？"_s;
    const QString failure = u"错误：也许没有管理员权限！"_s;
    const QString done = u"右键单击APK文件，然后选择“install”"_s;
    const struct {
      bool yes;
      int failing;
      QString writes, lastBox, settings;  // Explentry, Grant, tooltip
    } rows[] = {{false, 0, u""_s, question, u"off on off"_s},
                {true, 1, u"1"_s, failure, u"off on off"_s},
                {true, 2, u"123"_s, done, u"on off on"_s},
                {true, 3, u"123"_s, failure, u"off off off"_s},
                {true, 0, u"123"_s, done, u"on off on"_s}};
    for (const auto& row : rows) {
      MainWindowFixture window;
      const std::pair<QString, QString> before[] = {
          {u"Explentry"_s, u"off"_s}, {u"Grant"_s, u"on"_s}, {u"tooltip"_s, u"off"_s}};
      for (const auto& [section, value] : before) window.settings->write(section, value);
      window.desktop.answers = {BoxAnswer::Ok, row.yes ? BoxAnswer::Yes : BoxAnswer::No};
      NotedEntry entry(window.desktop, row.failing);
      QCoro::waitFor(
          FirstRun({window.desktop, *window.settings, [&window] { window.form->QuitProgram(); }}, entry));

      QCOMPARE(entry.writes, row.writes);
      QCOMPARE(window.desktop.boxes.size(), row.yes ? 3 : 2);
      QCOMPARE(window.desktop.boxes[1].buttons, BoxButtons::YesNo);
      QCOMPARE(window.desktop.boxTexts().last(), row.lastBox);
      QStringList settings;
      for (const auto& [section, value] : before) settings << window.settings->read(section, u"(none)"_s);
      QCOMPARE(settings.join(u' '), row.settings);
      QCOMPARE(window.desktop.beeps, row.lastBox == done ? 1 : 0);
      QCOMPARE(window.ends, 1);
    }
  }

  void tip() {
    const std::tuple<bool, Qt::Key, QString> ways[] = {
        {false, Qt::Key_Return, u"on"_s},
        {true, Qt::Key_Escape, u"on"_s},  // closed without the button
        {true, Qt::Key_Return, u"off"_s},
    };
    for (const auto& [checked, key, tooltip] : ways) {
      MainWindowFixture window;
      window.settings->write(u"tooltip"_s, u"on"_s);
      Form7 form(*window.settings);
      const auto closed = form.showModal();
      QVERIFY(QTest::qWaitForWindowExposed(&form));
      QVERIFY(form.Label1->height() >= form.Label1->heightForWidth(form.Label1->width()));
      form.Check1->setChecked(checked);
      QTest::keyClick(&form, key);
      QTRY_VERIFY(closed.isReady());
      QCOMPARE(window.settings->read(u"tooltip"_s, u"(none)"_s), tooltip);
    }
  }
};

QTEST_MAIN(FirstRunTest)
#include "first_run_test.moc"
