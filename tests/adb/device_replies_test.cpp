#include <QTest>

#include "adb/device_names.h"
#include "adb/devices.h"
#include "adb/installed_build.h"
#include "adb/runtime_permissions.h"
#include "adb/storage.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

/// "headed" or not, then for each device serial, state (the enumerator's number), model, then the complaints.
QString told(const DeviceList& list) {
  QString text = list.headed ? u"H"_s : u"-"_s;
  for (const ListedDevice& device : list.devices) {
    text += u" <%1>%2"_s.arg(device.serial).arg(static_cast<int>(device.state));
    for (const QString& part : {device.model, device.explanation, device.address})
      text += part.isEmpty() ? QString() : u'{' + part + u'}';
  }
  return text + (list.complaints.isEmpty() ? QString() : u" !"_s + list.complaints.join(u" !"_s));
}

/// The count, then "CAMERA=1" and so on for what was stored, without the names' common prefix.
QString told(const RuntimePermissions& found) {
  QString text = QString::number(found.RuntimePermCount);
  for (size_t i = 0; i < found.RuntimePermNames.size(); ++i) {
    QString name = found.RuntimePermNames[i];
    if (!found.RuntimePermStates[i].isEmpty())
      text += u' ' + name.remove(u"android.permission."_s) + u'=' + found.RuntimePermStates[i];
  }
  return text;
}

}  // namespace

/// What the headset tells of itself: the list of devices, builds, storage, permissions.
class DeviceRepliesTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void devices() {
    const QString heading = u"List of devices attached\n"_s;
    const QString site = u"http://developer.android.com/tools/device.html"_s;
    const std::pair<QString, QString> cases[] = {
        {{}, u"-"_s},
        {u"* daemon not running; starting now at tcp:5037\n* daemon started successfully\n"_s + heading +
             u'\n',
         u"H"_s},
        {heading + u"1WMHH8325K1147\tdevice\nemulator-5554\toffline\na\tunauthorized\nb\tauthorizing\n"
                   "c\tconnecting\nd\trecovery\ne\tsideload\nf\tbootloader\ng\thost\nh\tgone fishing\n"_s,
         u"H <1WMHH8325K1147>0 <emulator-5554>1 <a>2 <b>3 <c>4 <d>6 <e>7 <f>9 <g>10 <h>12"_s},
        {heading +
             u"1PASH9B7KS9283\tno permissions (user in plugdev group; are your udev rules wrong\?); see ["_s +
             site + u"]\n(no serial number)\tno permissions; see ["_s + site +
             u"] usb:1-4\n?\tno permissions"_s,
         u"H <1PASH9B7KS9283>5{user in plugdev group; are your udev rules wrong?}{"_s + site +
             u"} <(no serial number)>5{"_s + site + u"} <?>5"_s},
        // -l, a return in the middle, a serial with blanks, a port without its name
        {heading +
             u"SERIAL123        device product:generic_device\r model:Test_Model transport_id:1\r\n\r\n"
             "adb-01AB-CDd (2)._adb-tls-connect._tcp device product:x model:Quest_3 transport_id:3\n"
             "12345678               device 3-1 product:manet model:M device:manet transport_id:2\n"
             "quest-offline          offline transport_id:2\n"
             "2G0YC1   no permissions (missing udev rules? user is in plugdev); see ["_s +
             site + u"] usb:1-1"_s,
         u"H <SERIAL123>0{Test Model} <adb-01AB-CDd (2)._adb-tls-connect._tcp>0{Quest 3} <12345678>0{M} "
         "<quest-offline>1 <2G0YC1>5{missing udev rules? user is in plugdev}{"_s +
             site + u'}'},
        {heading + u"adb server version (41) doesn't match this client (39); killing...\n"
                   "* daemon started successfully *\n0123\tunauthorized usb:1-1\n8765\tdevice model:M\n"_s,
         u"H <0123>2 <8765>0{M} !adb server version (41) doesn't match this client (39); killing..."_s},
        {u"adb: failed to check server version: protocol fault (couldn't read status): Success\n"_s,
         u"- !adb: failed to check server version: protocol fault (couldn't read status): Success"_s},
        {u"ADB server didn't ACK\n* failed to start daemon *\nerror: cannot connect to daemon\n"_s,
         u"- !ADB server didn't ACK !* failed to start daemon * !error: cannot connect to daemon"_s},
        {heading + u"error: device offline\n\tdevice\nx\t\ndevice\nsome words of no sense\n"_s,
         u"H !error: device offline !device !x !device !some words of no sense"_s},
        {u"1WMHH8325K1147\tdevice\n"_s, u"- !1WMHH8325K1147\tdevice"_s},
    };
    for (const auto& [reply, expected] : cases) QCOMPARE(told(readDevices(reply)), expected);
    QCOMPARE(readDevices(heading + u"a b: x:y\tdevice\n"_s.repeated(200'000)).devices.size(), 200'000);
    QVERIFY(!answersLikeADevice(u"List of devices attached\r\n\r\n"_s) && !answersLikeADevice(QString()));
    QVERIFY(answersLikeADevice(u"List of devices attached\r\n1WMHH8325K1147\tdevice\r\n\r\n"_s));
    QVERIFY(!answersLikeADevice(QString(35, u'x')) && answersLikeADevice(QString(36, u'x')));
  }

  void builds() {
    const std::pair<QString, QString> cases[] = {
        // Recorded on a headset, in excerpts.
        {u"    primaryCpuAbi=arm64-v8a\r\n    secondaryCpuAbi=null\r\n"
         "    versionCode=83 minSdk=23 targetSdk=28\r\n    versionName=1.1.7\r\n"_s,
         u"83"_s},
        // several packages: the first of each
        {u"versionCode=500700000 minSdk=28\r\nversionCode=364105349 minSdk=21\r\n"_s, u"500700000"_s},
        {u"\r\nDexopt state:\r\n  Unable to find package: a.b\r\n"_s, u""_s},
        {u"versionCode=7\r\n"_s, u""_s},
        {u"minSdk=1 versionCode=7"_s, u""_s},
    };
    for (const auto& [output, build] : cases) QCOMPARE(installedBuildIn(output), build);
  }

  void figures() {
    const QString heading = u"Filesystem      Size  Used Avail Use% Mounted on\r\n"_s;
    const std::pair<QString, QString> cases[] = {
        {heading + u"/dev/fuse       109G   12G   97G  12% /storage/emulated\r\n"_s, u"109 12 97 12"_s},
        // a point goes, three characters count, a fifth figure changes nothing
        {heading + u"/dev/fuse 1024G 12.5G 5.5G 12% /storage\r\n"_s, u"102 12 55 12"_s},
        {heading + u"/dev/fuse 9G 2G 7G 22% /1 2 3\r\n"_s, u"9 2 7 22"_s},
        {u"Filesystem             Size   Used   Free   Blksize\r\n"
         "/dev                   362M    76K   362M   4096\r\n"_s,
         u"362 76 362 409"_s},
        {u"Filesystem     1K-blocks Used Available Use% Mounted on\r\n"_s, u"1   "_s},
        {u"error: no devices/emulators found\r\n"_s, u"   "_s},
        {u" 1"_s, u"   "_s},  // figures at both edges do not count
    };
    for (const auto& [output, figures] : cases) {
      const auto found = storageFiguresIn(output);
      QCOMPARE((QStringList{found[1], found[2], found[3], found[4]}.join(u' ')), figures);
    }
  }

  void freeSpaces() {
    QCOMPARE(freeSpace(u"109"_s, u"12"_s), std::optional<qint64>(97));
    QCOMPARE(freeSpace(u"5"_s, u"55"_s), std::optional<qint64>(-50));
    QVERIFY(!freeSpace(QString(), u"12"_s) && !freeSpace(u"12"_s, QString()));
    QCOMPARE(KeepDigits(u" 1a2.3\u0664"_s), u"123"_s);
  }

  void rooms() {
    const QString heading = u"Filesystem      Size  Used Avail Use% Mounted on\n"_s;
    const QString wrapped = u"/dev/block/platform/soc/1da4000.ufshc/by-name/userdata\n"_s;
    const std::pair<QString, const char*> cases[] = {
        {heading + u"/dev/fuse       109G  9.8G   99G  10% /storage/emulated\n"_s,
         "109 GiB ± 512 MiB, 9.8 GiB ± 51.2 MiB, 99.0 GiB ± 512 MiB"},
        {heading + u"/dev/fuse 1.0T 912M 0 100% /s\n"_s, "1.0 TiB ± 51.2 GiB, 912 MiB ± 512 KiB, 0 B ± 0 B"},
        {u"Filesystem  Type  Size  Used Avail Use% Mounted on\n/dev/dm-4 ext4 836K  808K   12K  99% /apex\n"_s,
         "836 KiB ± 512 B, 808 KiB ± 512 B, 12.0 KiB ± 512 B"},
        {heading + wrapped + u"                 109.0G  12.0G  97.0G 11% /data\n"_s,
         "109 GiB ± 51.2 MiB, 12.0 GiB ± 51.2 MiB, 97.0 GiB ± 51.2 MiB"},
        {u"Filesystem             Size   Used   Free   Blksize\n/mnt/sdcard   27G    19G     8G   4096\n"_s,
         "27.0 GiB ± 512 MiB, 19.0 GiB ± 512 MiB, 8.0 GiB ± 512 MiB"},
        {u"Filesystem     1K-blocks     Used Available Use% Mounted on\n"
         "/dev/fuse      114786388 87698840  26956476  77% /storage/emulated\n"_s,
         "109 GiB ± 512 B, 83.6 GiB ± 512 B, 25.7 GiB ± 512 B"},
        {u"Filesystem 1024-blocks Used Available Capacity Mounted on\n/dev/my disk 2 1 1 50% /s\n"_s,
         "2.0 KiB ± 512 B, 1.0 KiB ± 512 B, 1.0 KiB ± 512 B"},
        {heading, ""},
        {u"/dev/fuse       109G  9.8G   99G  10% /storage/emulated\n"_s, ""},
        {heading + u"/dev/fuse 9G 2G 7G 22% /a\n/dev/fuse 9G 2G 7G 22% /b\n"_s, ""},
        {heading + u"/dev/fuse 9X 2G - 22% /a\n99999999999P 1e9G 1G 1G\n"_s, ""},
        {u"error: no devices/emulators found\n"_s, ""},
    };
    for (const auto& [reply, expected] : cases) {
      QStringList told;
      if (const auto room = storageRoomIn(QString(reply).replace(u'\n', u"\r\n"_s))) {
        for (const StorageFigure& figure : {room->size, room->used, room->available})
          told << readableSize(figure.bytes) + u" ± "_s + readableSize(figure.uncertainty);
      }
      QCOMPARE(told.join(u", "_s), QString::fromUtf8(expected));
    }
    const std::pair<qint64, QString> sizes[] = {{999, u"999 B"_s},
                                                {1000, u"1.0 KiB"_s},
                                                {102'340, u"99.9 KiB"_s},
                                                {102'400, u"100 KiB"_s},
                                                {1'048'000'000, u"999 MiB"_s},
                                                {1'048'575'999, u"1.0 GiB"_s},
                                                {-1, u"0 B"_s},
                                                {std::numeric_limits<qint64>::max(), u"8192 PiB"_s}};
    for (const auto& [bytes, expected] : sizes) QCOMPARE(readableSize(bytes), expected);
  }

  void storageReplies() {
    QCOMPARE(externalStorageIn(u"/sdcard\r\n"_s), u"/sdcard"_s);
    QCOMPARE(externalStorageIn(u"\r"_s), QString());
    QVERIFY(isPlainDevicePath(u"/sdcard"_s));
    // The stars of the greeting would match every folder of the device.
    for (const QString& words : {QString(), u"error: no devices/emulators found"_s,
                                 u"* daemon not running; starting now at tcp:5037\r\n/sdcard"_s})
      QVERIFY2(!isPlainDevicePath(words), qPrintable(words));
  }

  void runtimePermissions() {
    const QString camera = u"  android.permission.CAMERA: granted=true, flags=[ USER_SET]\n"_s;
    const QString mic = u"  android.permission.RECORD_AUDIO: granted=false\n"_s;
    const QString heading = u"   runtime permissions:\n"_s;
    // Recorded on a phone, in excerpts.
    const QString phone =
        u"    install permissions:\n"
        "      android.permission.USE_CREDENTIALS: granted=true\n"
        "    User 0: ceDataInode=-4294835341 installed=true hidden=false\n"
        "      runtime permissions:\n"
        "        android.permission.ACCESS_FINE_LOCATION: granted=false, flags=[ USER_SET|"
        "USER_SENSITIVE_WHEN_GRANTED|USER_SENSITIVE_WHEN_DENIED]\n"
        "        android.permission.CAMERA: granted=false, flags=[ USER_SENSITIVE_WHEN_GRANTED|"
        "USER_SENSITIVE_WHEN_DENIED]\n"
        "      disabledComponents:\n"_s;
    const std::pair<QString, const char*> cases[] = {
        {phone, "2 ACCESS_FINE_LOCATION=0 CAMERA=0"},
        {u"install permissions:\n"_s + camera, "0"},
        {u"Runtime Permissions:\n"_s + camera, "0"},
        // The end of the block does not end the reading; permissions of other makers do not count.
        {camera + heading + camera + u" com.x.permission.Y: granted=true\nShared users:\n"_s + mic,
         "2 CAMERA=1 RECORD_AUDIO=0"},
        {heading + camera + u"User 10:\n"_s + heading + mic, "3 CAMERA=1 RECORD_AUDIO=0 RECORD_AUDIO=0"},
        {heading + u"runtime permissions: android.permission.Y\n"_s, "1 runtime permissions=0"},
        {heading + u"android.permission.A\nandroid.ptermission android.permission.B\n"_s, "2 =0 =1"},
        {heading + u"android.permission.A: granted=tomorrow\nandroid.permission.B: granted=True\n"
                   "android.permission.C:granted=true\nandroid.permission.D:"_s,
         "4 A=1 B=0 C=0 D=0"},
    };
    for (const auto& [lines, expected] : cases)
      QCOMPARE(told(readRuntimePermissions(QString(lines).replace(u'\n', u"\r\n"_s))),
               QString::fromLatin1(expected));
    QCOMPARE(told(readRuntimePermissions(heading + camera)), u"0"_s);
  }

  void moreRuntimePermissionsThanPlaces() {
    QString reply = u"runtime permissions:\r\n"_s;
    for (int i = 1; i <= 120'000; ++i) reply += u"android.permission.P%1: granted=true\r\n"_s.arg(i);
    RuntimePermissions found = readRuntimePermissions(reply);
    QCOMPARE(found.RuntimePermCount, 120'000);
    QCOMPARE(found.RuntimePermNames[99], u"android.permission.P99"_s);
    // Every heading counts all that follows; the work must not grow quadratically.
    found = readRuntimePermissions(u"runtime permissions\r\n"_s.repeated(120'000) + reply);
    QCOMPARE(found.RuntimePermCount, std::numeric_limits<qint32>::max());
  }
};

QTEST_APPLESS_MAIN(DeviceRepliesTest)
#include "device_replies_test.moc"
