#include <QTest>

#include "monitor/connection.h"
#include "monitor/installed_build.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

class ConnectionTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void verdicts() {
    const struct {
      QString onDevice, inPackage;
      BuildVerdict verdict;
    } cases[] = {
        {u"122"_s, u"121"_s, BuildVerdict::Newer},
        {u"9"_s, u"10"_s, BuildVerdict::Older},  // as numbers
        {u"121"_s, u"121"_s, BuildVerdict::Same},
        {u"007"_s, u"7"_s, BuildVerdict::Undecided},
        {QString(), u"7"_s, BuildVerdict::NotInstalled},
        {u"7"_s, QString(), BuildVerdict::Older},
        {u"nan"_s, u"nan"_s, BuildVerdict::Older},
        {u"4294967297"_s, u"4294967296"_s, BuildVerdict::Newer},  // beyond 32 bits
    };
    for (const auto& [onDevice, inPackage, verdict] : cases)
      QVERIFY2(compareBuilds(onDevice, inPackage) == verdict, qPrintable(onDevice + u" / "_s + inPackage));
  }

  void connections() {
    using Tool = ConnectionFacts::Tool;
    using State = ConnectionState;
    using Action = ConnectionAction;
    const QString heading = u"List of devices attached\r\n"_s;
    const QString ready = heading + u"1WMHH8325K1147\tdevice\r\n"_s;
    const QString locked = u"2G0Y\tno permissions (missing udev rules\?); see [http://x]\r\n"_s;
    const QString quarrel = u"adb server version (41) doesn't match this client (39); killing...\r\n"_s;
    const struct {
      ConnectionFacts facts;
      State state;
      Action action;
      QString part = {};  ///< of the sentence or the remedy, in both languages
    } rows[] = {
        {{Tool::Missing, false, 60, ready}, State::ToolMissing, Action::ChooseToolFolder},
        {{.tool = Tool::Missing, .toolPlaces = {u"/a"_s, u"/b c"_s}},
         State::ToolElsewhere,
         Action::ChooseToolFolder,
         u"/a, /b c"_s},
        {{Tool::NotExecutable, true, 0, {}}, State::ToolNotExecutable, Action::ChooseToolFolder},
        {{Tool::Runs, false, 60, ready}, State::Paused, Action::None},
        {{Tool::Runs, true, 9, ready}, State::ServerSilent, Action::RestartServer, u" 9 "_s},
        {{Tool::Runs, true, 2, {}}, State::Looking, Action::None},
        {{Tool::Runs, true, 2, QString()}, State::NoAnswer, Action::RestartServer},
        {{.answer = quarrel + u"* daemon started successfully\r\n"_s + heading},
         State::OtherServer,
         Action::RestartServer},
        {{.answer = quarrel + ready}, State::Ready, Action::ChooseDevice, u"1WMHH8325K1147"_s},
        {{.answer = u"adb: failed to check server version: protocol fault (x)\r\n"_s},
         State::PortTaken,
         Action::RestartServer,
         u"(x)"_s},
        {{.answer = u"cannot connect to daemon at tcp:5037: Connection refused\r\n"_s},
         State::ServerFailed,
         Action::RestartServer,
         u"Connection refused"_s},
        {{.answer = heading, .pluggedIn = false}, State::NoDevice, Action::ShowSteps, u"3. "_s},
        {{.answer = heading, .pluggedIn = true}, State::NotListed, Action::CopyUdevCommand},
        {{.answer = heading + locked, .pluggedIn = true}, State::NoPermissions, Action::CopyUdevCommand},
        {{.answer = ready + locked}, State::Ready, Action::ChooseDevice},
        {{.answer = heading + u"a\tunauthorized\r\n"_s}, State::Unauthorized, Action::RestartServer},
        {{.answer = heading + u"a\tauthorizing\r\n"_s}, State::Connecting, Action::None},
        {{.answer = heading + u"a\toffline\r\n"_s}, State::Offline, Action::RestartServer},
        {{.answer = heading + u"a\trecovery\r\n"_s}, State::OtherMode, Action::None, u"recovery"_s},
        {{.answer = heading + u"a\t%1 odd\r\n"_s}, State::UnknownState, Action::RestartServer, u"%1 odd"_s},
        // adb could not tell which one is meant, although only one is ready
        {{.answer = ready + u"a\toffline\r\n"_s}, State::Several, Action::ChooseDevice, u"2 "_s},
        {{.answer = ready + u"a\toffline\r\n"_s, .chosenSerial = u"1WMHH8325K1147"_s},
         State::Ready,
         Action::ChooseDevice},
        {{.answer = ready, .chosenSerial = u"gone"_s}, State::ChosenGone, Action::ChooseDevice, u"gone"_s},
        {{.answer = heading, .chosenSerial = u"gone"_s, .pluggedIn = true},
         State::ChosenGone,
         Action::ChooseDevice},
        {{.answer = ready, .listUsedUp = true}, State::ListUsedUp, Action::StartAnew, u"1WMHH8325K1147"_s},
    };
    for (const auto& [facts, state, action, part] : rows) {
      const Connection found = diagnose(facts);
      const QString chinese = found.sentence.chinese + u'|' + found.remedy.chinese;
      const QString english = found.sentence.english + u'|' + found.remedy.english;
      QVERIFY2(found.state == state && found.action == action, qPrintable(english));
      QVERIFY2(chinese.contains(part) && english.contains(part), qPrintable(chinese + english));
      QCOMPARE(found.actionCaption.shown().isEmpty(), action == Action::None);
    }
  }
};

QTEST_GUILESS_MAIN(ConnectionTest)
#include "connection_test.moc"
