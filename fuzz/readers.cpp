#include "readers.h"

#include <cstdio>
#include <cstdlib>

#include "adb/app_state.h"
#include "adb/devices.h"
#include "adb/failure_codes.h"
#include "adb/installed_build.h"
#include "adb/listing.h"
#include "adb/network.h"
#include "adb/outcome.h"
#include "adb/replies.h"
#include "adb/runtime_permissions.h"
#include "adb/storage.h"
#include "apk/badging.h"
#include "apk/icon_entries.h"
#include "backups/manifest.h"
#include "core/report_text.h"
#include "core/utf8_stream.h"
#include "inventory/parser.h"
#include "permissions/permission_list.h"
#include "platform/command_line.h"
#include "platform/line_ends.h"

using namespace Qt::StringLiterals;

namespace orvanta::fuzz {

namespace {

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "This does not hold: %s\n", what);
  std::abort();
}

QString text(const QByteArray& bytes) {
  return QString::fromUtf8(bytes);
}

void readPackage(const QByteArray& bytes) {
  std::array<QString, 51> fields;
  int count = 0;
  readBadging(text(bytes), fields, count);
  (void)permissionList(fields, count);
  require(firstWords(text(bytes)).size() <= 300, "an error is cut to 300 characters");
  for (const QString& entry : iconEntries(fields[9])) {
    const QString name = iconFileName(entry);
    require(!name.contains(u'/') && name != ".."_L1, "an icon stays in its folder");
  }
}

void readBuild(const QByteArray& bytes) {
  const QString reply = text(bytes);
  require(installedBuildIn(reply).size() <= reply.size(), "a build is part of the reply");
  (void)knowsPackage(reply);
}

void readStorage(const QByteArray& bytes) {
  const QString reply = text(bytes);
  (void)externalStorageIn(reply);
  const std::array<QString, 5> figures = storageFiguresIn(reply);
  (void)freeSpace(figures[1], figures[2]);
  if (const std::optional<StorageRoom> room = storageRoomIn(reply)) {
    require(room->available.bytes >= 0, "free space is not negative");
    (void)readableSize(room->available.bytes);
  }
}

void readListing(const QByteArray& bytes) {
  const QString reply = text(bytes);
  const ListedFiles files(reply);
  (void)files.sizeOf(u"main.1.com.example.obb"_s);
  (void)listsFiles(reply);
  (void)isOnDevice(u"main.1.com.example.obb"_s, reply);
}

void readDeviceList(const QByteArray& bytes) {
  const QString reply = text(bytes);
  const DeviceList list = readDevices(reply);
  require(list.headed || list.devices.isEmpty(), "a row before the heading is no device");
  (void)answersLikeADevice(withoutServerNotes(reply));
}

void readTransfer(const QByteArray& bytes) {
  const QString reply = text(bytes);
  const QString plain = withoutProgress(withoutServerNotes(reply));
  (void)packageFileIn(reply);
  (void)saysFolderPulled(plain);
  (void)saysRemoteMissing(plain);
  (void)tellingLine(plain);
  (void)CTrim(plain);
  const DeviceSizes sizes = sizesIn(reply);
  require(sizes.files >= 0 && sizes.bytes >= 0, "sizes are not negative");
}

void readOutcome(const QByteArray& bytes) {
  const QString reply = text(bytes);
  for (const Outcome& outcome : {installOutcome(reply), uninstallOutcome(reply), pushOutcome(reply)}) {
    require(outcome.kind != Outcome::Kind::Success || outcome.code.isEmpty(),
            "a success has no code of a refusal");
    for (const PackageWork work : {PackageWork::Install, PackageWork::Uninstall})
      (void)failureCode(outcome.code, work);
  }
}

void readPermissions(const QByteArray& bytes) {
  require(readRuntimePermissions(text(bytes)).RuntimePermCount >= 0, "a count is not negative");
}

void readApps(const QByteArray& bytes) {
  const QString output = text(bytes);
  for (const InventoryApp& app : readInventory(output).apps) {
    for (const QStringView cell : app) {
      for (const CellKind kind : {CellKind::Number, CellKind::Size, CellKind::Date})
        (void)cellValue(kind, cell);
    }
  }
}

void readAppState(const QByteArray& bytes) {
  const AppState state = appStateIn(text(bytes), u"com.example"_s);
  require(state.bytes() >= 0, "sizes are not negative");
  (void)headsetIn(text(bytes)).name();
}

void readBackup(const QByteArray& bytes) {
  const auto read = readManifest(bytes);
  const auto* manifest = std::get_if<BackupManifest>(&read);
  if (manifest == nullptr) return;
  for (const BackupFile& file : manifest->files) {
    const QStringList parts =
        file.path.split(u'/') + file.known().split(u'/') + file.devicePath().split(u'/');
    require(!parts.contains(u".."_s) && !file.path.startsWith(u'/'), "no name leads out of the backup");
    require(file.size >= 0, "sizes are not negative");
  }
  const QByteArray written = manifestText(*manifest);
  const auto again = readManifest(written);
  require(std::holds_alternative<BackupManifest>(again) &&
              manifestText(std::get<BackupManifest>(again)) == written,
          "what is written is read back");
}

void readNetwork(const QByteArray& bytes) {
  const QString reply = text(bytes);
  const QString address = networkAddressIn(reply);
  require(address.isEmpty() || isNetworkAddress(address + u":5555"_s), "an address can be connected to");
  (void)isNetworkAddress(reply);
  (void)isNetworkSerial(reply);
}

void readStream(const QByteArray& bytes) {
  const auto linesInPieces = [&bytes](qsizetype first) {
    LineEndNormalizer ends;
    QByteArray lines;
    ends.feed(QByteArrayView(bytes).first(first), lines);
    ends.feed(QByteArrayView(bytes).sliced(first), lines);
    ends.flush(lines);
    return lines;
  };
  const QByteArray whole = linesInPieces(0);
  const qsizetype middle = bytes.size() / 2;
  require(linesInPieces(middle) == whole, "line ends are the same however the bytes arrive");
  require(whole.count('\n') == whole.count("\r\n") && !whole.contains("\r\r\n"), "each line end is CR LF");

  const auto textInPieces = [&bytes](qsizetype first) {
    Utf8Stream stream;
    QString text = stream.decode(bytes.first(first));
    text += stream.decode(bytes.sliced(first));
    return text + stream.rest();
  };
  require(textInPieces(middle) == textInPieces(bytes.size()), "text is the same however the bytes arrive");
}

void readCommandLine(const QByteArray& bytes) {
  const QString line = text(bytes);
  (void)splitCommandLine(line);
  const QStringList words = {u"tool"_s, line};
  require(splitCommandLine(u"tool "_s + quotedArgument(line)) == words, "a quoted word comes back");
}

void readReport(const QByteArray& bytes) {
  // With blanks around it, nothing can make it a part of another name.
  const QString home = u" /home/anastasia "_s;
  const QString report = reportText({{u"Console"_s, text(bytes) + home}},
                                    {{u"anastasia"_s}, {u"/home/anastasia"_s}, {u"1WMHH8325K1147"_s}});
  require(!report.contains(home), "the home folder is left out");
}

QByteArray manifestSeed() {
  BackupManifest manifest;
  manifest.package = u"com.example"_s;
  manifest.label = u"例"_s;
  manifest.build = u"83"_s;
  manifest.date = QDateTime::fromSecsSinceEpoch(1611234567);
  manifest.headsetModel = u"Quest 3"_s;
  manifest.headsetSerial = u"2G0YC1ZF7T0D3K"_s;
  manifest.files = {{u"apk/base.apk"_s, 5, QByteArray(64, 'a'), 7, {}},
                    {u"data/com.example/a_b"_s, 5, QByteArray(64, 'b'), 7, u"data/com.example/a:b"_s}};
  manifest.emptyFolders = {u"data/com.example/empty"_s};
  manifest.unreadable = {u"cannot open"_s};
  return manifestText(manifest);
}

}  // namespace

const QList<Reader>& readers() {
  static const QList<Reader> all = {
      {"badging", readPackage,
       "package: name='com.example.app' versionCode='12' versionName='1.2' platformBuildVersionName=''\r\n"
       "uses-permission: name='android.permission.INTERNET'\r\napplication-label:'It\\'s'\r\n"
       "application: label='Example' icon='res/drawable/icon.png'\r\n"
       "uses-feature: name='android.hardware.vr.headtracking'\r\n"},
      {"build", readBuild,
       "Packages:\r\n  Package [com.example] (2e4):\r\n    versionCode=83 minSdk=23 targetSdk=28\r\n    "
       "versionName=1.2\r\n"},
      {"storage", readStorage,
       "Filesystem      Size  Used Avail Use% Mounted on\r\n/dev/fuse       109G  9.8G   99G  10% "
       "/storage/emulated\r\n"},
      {"listing", readListing,
       "/sdcard/Android/obb/com.example:\r\ntotal 8\r\n"
       "-rw-rw---- 1 root sdcard_rw 5 2021-01-01 00:00 main.1.com.example.obb\r\n"
       "-rw-rw---- root     sdcard_rw        5 2021-01-01 00:00 "
       "patch.1.obb\r\n\r\n/sdcard/Android/obb/com.example/x:\r\n"},
      {"devices", readDeviceList,
       "* daemon not running; starting now at tcp:5037\r\n* daemon started successfully\r\nList of devices "
       "attached\r\n"
       "1WMHH8325K1147\tdevice\r\n2G0YC1ZF7T0D3K\tno permissions (missing udev rules?); see [http://x]\r\n"
       "192.168.1.57:5555 offline product:eureka model:Quest_3 transport_id:3\r\n\r\n"},
      {"transfer", readTransfer,
       "pull: building file list...\r\n[ 28%] /sdcard/x/save: 28%\r/sdcard/x/: 10 files pulled, 0 skipped. "
       "1.4 MB/s "
       "(100 bytes in 0.001s)\r\npackage:/data/app/com.example-1/base.apk\r\n"
       "adb: error: failed to stat remote object '/sdcard/x': No such file or directory\r\n12345\r\n"},
      {"outcome", readOutcome,
       "Performing Streamed Install\r\nadb: failed to install x.apk: Failure "
       "[INSTALL_FAILED_VERSION_DOWNGRADE: "
       "Downgrade detected]\r\nFailure [DELETE_FAILED_INTERNAL_ERROR]\r\nFailure [-25]\r\nSuccess\r\n"
       "adb: error: failed to copy 'a' to '/sdcard/a': remote write failed: No space left on device\r\n"},
      {"permissions", readPermissions,
       "    runtime permissions:\r\n      android.permission.CAMERA: granted=true, flags=[ USER_SET]\r\n"
       "      android.permission.RECORD_AUDIO: granted=false\r\n"},
      {"inventory", readApps,
       "IP3x: com.example \r\napplication-label:'Example'\r\nVC3x: versionName:1.2\r\n"
       "VC3x: versionCode:83 minSdk=23 targetSdk=28\r\nTO3x: 12.5\r\nAP3x: 12.5\r\nOB3x: 0.0\r\nAD3x: "
       "0.0\r\nerror: closed\r\n"},
      {"app-state", readAppState,
       "F 129206570 1611234567 /data/app/com.example-1/base.apk\r\nF 5 1611234567 "
       "/sdcard/Android/obb/com.example/a b.obb\r\n"
       "F 7 1 /sdcard/Android/data/com.example/files/save\r\nversionCode=83 minSdk=23 "
       "targetSdk=28\r\nversionName=1.2\r\n"
       "Filesystem     1K-blocks     Used Available Use% Mounted on\r\n"
       "/dev/fuse      114294764 12884901 101409863  12% /storage/emulated\r\nend\r\n"},
      {"manifest", readBackup, manifestSeed()},
      {"network", readNetwork,
       "31: wlan0: <BROADCAST,MULTICAST,UP,LOWER_UP> mtu 1500 qdisc mq state UP group default qlen 3000\r\n"
       "    inet 192.168.1.57/24 brd 192.168.1.255 scope global wlan0\r\n"},
      {"stream", readStream, "a\nb\r\nc\r\r\nd\r e \xc3\xa4 \xe4\xb8\xad \xf0\x9f\x98\x80\r"},
      {"command-line", readCommandLine, R"("C:\a b\adb" push "x \"y\\" '/sdcard/a b' \\" "")"},
      {"report", readReport,
       "/home/anastasia/Downloads/x.apk C:\\Users\\anastasia\\x file:///home/anastasia/%E4%B8%AD\r\n"
       "List of devices attached\r\n1WMHH8325K1147\tdevice\r\n192.168.1.57:5555\tdevice\r\n"},
  };
  return all;
}

}  // namespace orvanta::fuzz
