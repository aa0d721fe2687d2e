#include "adb/outcome.h"

#include <QTest>

#include "adb/failure_codes.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

class OutcomeTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void outcomes() {
    using Kind = Outcome::Kind;
    constexpr auto install = &installOutcome;
    constexpr auto uninstall = &uninstallOutcome;
    constexpr auto push = &pushOutcome;
    const QString none;
    const struct {
      Outcome (*read)(const QString&);
      QString reply;
      Kind kind;
      QString code = {};
      QString part = {};  ///< of the English sentence and the words
    } rows[] = {
        {install, u"Performing Streamed Install\nSuccess\n"_s, Kind::Success},
        {install,
         u"Performing Push Install\nx.apk: 1 .... 6.3 MB/s\n\tpkg: /data/local/tmp/x.apk\n\nSuccess"_s,
         Kind::Success},
        {install, u"Warning [Could not validate the dex paths: base.dm]\nSuccess\n"_s, Kind::Success},
        {install, u"Warning: com.x uses a deprecated API.\nCompleted with warning(s)\n"_s, Kind::Success,
         none, u"warnings"_s},
        {install,
         u"Performing Streamed Install\nadb: failed to install ./S.apk: Failure "
         "[INSTALL_FAILED_VERSION_DOWNGRADE: Downgrade detected: Update version code 34]\n"_s,
         Kind::Refused, u"INSTALL_FAILED_VERSION_DOWNGRADE"_s, u"newer build"_s},
        {install,
         u"Success: created install session [1]\nFailure [INSTALL_FAILED_NO_MATCHING_ABIS: "
         "INSTALL_FAILED_NO_MATCHING_ABIS: Failed to extract, res=-113]\nSuccess\n"_s,
         Kind::Refused, u"INSTALL_FAILED_NO_MATCHING_ABIS"_s, u"|Failed to extract"_s},
        {install, u"/data/local/tmp/_stream.apk could not be installed [INSTALL_PARSE_FAILED_NOT_APK: x]"_s,
         Kind::Refused, u"INSTALL_PARSE_FAILED_NOT_APK"_s, u"not an APK"_s},
        {install,
         u"adb: failed to finalize session\nFailure [INSTALL_FAILED_INVALID_APK: splits=[config.en]]\n"_s,
         Kind::Refused, u"INSTALL_FAILED_INVALID_APK"_s, u"splits=[config.en]"_s},
        {install, u"Failure [-124: Targeting R+ requires the resources.arsc]"_s, Kind::Refused, u"-124"_s,
         u"put together"_s},
        {install, u"Failure [-1003]"_s, Kind::Refused, u"-1003"_s, u"refused: -1003"_s},
        {install, u"Failure [INSTALL_FAILED_OF_TOMORROW: no]"_s, Kind::Refused,
         u"INSTALL_FAILED_OF_TOMORROW"_s, u"INSTALL_FAILED_OF_TOMORROW"_s},
        {install,
         u"adb.exe: failed to install x.apk:\nException occurred while executing:\nandroid.os."
         "ParcelableException: java.io.IOException: Requested internal only, but not enough space\n\tat x"_s,
         Kind::Refused, none, u"free space"_s},
        {install,
         u"Exception occurred while executing 'install':\njava.lang.SecurityException: You need the android."
         "permission.INSTALL_GRANT_RUNTIME_PERMISSIONS permission\n\tat a.b\n"_s,
         Kind::Refused, none, u"Untick"_s},
        {install, u"Performing Streamed Install\nadb: connect error for write: device unauthorized.\n"_s,
         Kind::NotReached, none, u"Allow"_s},
        {install, u"adb: failed to install C:\\x.apk: \n"_s, Kind::NotReached, none, u"link"_s},
        {install, u"adb: failed to stat x.apk: No such file or directory\n"_s, Kind::Refused, none,
         u"this computer"_s},
        {install, u"Performing Streamed Install\n"_s, Kind::Unclear, none, u"Performing"_s},
        {install, u"* daemon started successfully\n"_s, Kind::Empty},
        {uninstall, u"error: no devices/emulators found\n- waiting for device -\nSuccess\n"_s, Kind::Success},
        {uninstall, u"Failure [DELETE_FAILED_INTERNAL_ERROR]\n"_s, Kind::Refused,
         u"DELETE_FAILED_INTERNAL_ERROR"_s, u"not there"_s},
        {uninstall, u"Failure [-2]"_s, Kind::Refused, u"-2"_s, u"administrator"_s},
        {uninstall, u"Failure [not installed for 0]"_s, Kind::Refused, u"not installed for 0"_s,
         u"not installed"_s},
        {uninstall, u"Failure\n"_s, Kind::Refused, u"Failure"_s},
        {uninstall,
         u"Exception occurred while dumping:\njava.lang.IllegalArgumentException: Unknown package: a.b\n"_s,
         Kind::Refused, none, u"not installed"_s},
        {uninstall, u"java.lang.SecurityException: Shell may not access user 10"_s, Kind::Refused, none,
         u"refused: Shell may not"_s},
        {uninstall, u"error: device 'emulator-5554' not found\n"_s, Kind::NotReached, none,
         u"not connected"_s},
        {uninstall, u"error: more than one device/emulator\n"_s, Kind::NotReached, none, u"Several"_s},
        {uninstall, u"cmd: Can't find service: package\n"_s, Kind::NotReached, none, u"starting"_s},
        {push, u"E:\\lorem\\: 1 file pushed, 0 skipped. 50.2 MB/s (1264065082 bytes in 24.033s)\n"_s,
         Kind::Success},
        {push, u"d/: 0 files pushed, 0 skipped.\n"_s, Kind::Unclear},
        {push,
         u"adb: error: failed to copy 'a' to '/sdcard/a': remote write failed: No space left on device\n"
         "a: 0 files pushed, 0 skipped. 1 MB/s\n"_s,
         Kind::Refused, none, u"free space"_s},
        {push, u"adb: error: failed to copy 'a' to '/s/': remote couldn't create file: Is a directory\n"_s,
         Kind::Refused, none, u"folder"_s},
        {push, u"adb: error: failed to copy 'a' to 'b': couldn't read from device\na: 0 files pushed\n"_s,
         Kind::NotReached, none, u"link"_s},
        {push, u"adb: error: failed to get feature set: device offline\n"_s, Kind::NotReached, none,
         u"offline"_s},
    };
    for (const auto& [read, reply, kind, code, part] : rows) {
      const Outcome outcome = read(QString(reply).replace(u'\n', u"\r\n"_s));
      const QString said = outcome.sentence.english + u'|' + outcome.words;
      QVERIFY2(outcome.kind == kind && outcome.code == code && said.contains(part), qPrintable(reply + said));
      QCOMPARE(outcome.sentence.chinese.isEmpty(), outcome.sentence.english.isEmpty());
    }
    // A code is found by name even if it shares its number with another.
    QCOMPARE(failureCode(u"DELETE_FAILED_ABORTED"_s, PackageWork::Install)->name, u"DELETE_FAILED_ABORTED"_s);
    QVERIFY(!failureCode({}, PackageWork::Install) &&
            !failureCode(u"-8"_s, PackageWork::Uninstall)->name.isEmpty());
    QCOMPARE(installOutcome(u"Failure [x could not be installed ["_s.repeated(50'000)).kind, Kind::Unclear);
  }
};

QTEST_APPLESS_MAIN(OutcomeTest)
#include "outcome_test.moc"
