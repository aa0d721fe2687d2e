#include "core/enabled_controls.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace orvanta;

/// What the user may press, situation by situation.
class EnabledControlsTest : public QObject {
  Q_OBJECT

  using Phase = Availability::Phase;

  static QString enabled(const State& state) {
    const std::pair<Control, const char*> named[] = {
        {Control::Command1, "1"},   {Control::Command2, "2"},   {Control::Command3, "3"},
        {Control::Command4, "4"},   {Control::Command5, "5"},   {Control::Command6, "6"},
        {Control::Command9, "9"},   {Control::Command10, "10"}, {Control::Command11, "11"},
        {Control::Command12, "12"}, {Control::Check1, "grant"}, {Control::Fields, "fields"}};
    QStringList names;
    for (const auto& [control, name] : named) {
      if (isEnabled(control, state)) names << QString::fromLatin1(name);
    }
    return names.join(u' ');
  }

 private Q_SLOTS:
  void situations() {
    const QString all = u"1 2 3 4 5 6 9 10 11 12 grant fields"_s;
    const QString notInstalled = u"1 2 3 6 9 10 11 12 grant fields"_s;
    const QString listClosed = u"1 2 3 4 5 6 10 11 12 grant fields"_s;
    const struct {
      bool loaded;
      QList<Phase> phases;  // one after the other
      bool installed, listClosed;
      QString expected;
    } rows[] = {
        {false, {}, false, false, u"3 6 9 10 11 12"_s},
        {true, {}, true, false, all},
        {true, {}, false, false, notInstalled},
        {true, {}, true, true, listClosed},
        {true, {Phase::Answered}, true, false, all},
        {true, {Phase::Answered}, false, false, notInstalled},
        {false, {Phase::Answered}, true, false, u"3 6 9 10 11 12"_s},
        {true, {Phase::Answered}, true, true, listClosed},
        {true, {Phase::Answered, Phase::Gone}, true, false, u"3 grant fields"_s},
        {false, {Phase::Gone}, false, true, u"3"_s},
        {true, {Phase::Answered, Phase::Locked}, true, false, u"grant fields"_s},
        {true, {Phase::Locked, Phase::Unlocked}, false, false, u"2 3 4 5 6 grant fields"_s},
    };
    for (const auto& row : rows) {
      State state;
      state.package.NoApkLoaded = row.loaded ? 0 : 1;
      state.setMayUninstall(row.installed);
      for (const Phase phase : row.phases) state.setPhase(phase);
      if (row.listClosed) state.closeInstalledApps();
      QCOMPARE(enabled(state), row.expected);
    }
  }

  void uninstallFollowsTheComparisonAfterThePoll() {
    State state;
    state.setPhase(Phase::Gone);
    state.setPhase(Phase::Answered);
    QVERIFY2(!isEnabled(Control::Command4, state), "not before the device has told the build");
    state.setMayUninstall(true);
    QVERIFY(isEnabled(Control::Command4, state) && isEnabled(Control::Command5, state));
    state.setPhase(Phase::Locked);
    state.setPhase(Phase::Unlocked);
    state.setPhase(Phase::Answered);
    QVERIFY2(isEnabled(Control::Command4, state), "as the install left it, until the comparison");
  }
};

QTEST_APPLESS_MAIN(EnabledControlsTest)
#include "enabled_controls_test.moc"
