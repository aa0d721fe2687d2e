#include <QTest>

#include "inventory/script.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

/// The raw strings come after the class, which moc would not find after them.
class BatchScriptTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void batchText() {
    QCOMPARE(batchInventoryScript(u"C:\\Program Files\\Orvanta"_s), batchLines.join(u"\r\n"_s) + u"\r\n"_s);
    const QString odd = batchInventoryScript(u"D:\\100% APP%APP%"_s);
    QCOMPARE(odd.split(u"\r\n"_s)[1], u"SET ADB=D:\\100% APP%APP%\\adb.exe"_s);
  }

 private:
  static const QStringList batchLines;
};

// clang-format off
const QStringList BatchScriptTest::batchLines = {
    uR"bat(@echo OFF)bat"_s,
    uR"bat(SET ADB=C:\Program Files\Orvanta\adb.exe)bat"_s,
    uR"bat(SETLOCAL EnableDelayedExpansion)bat"_s,
    uR"bat("!ADB!" !DEVICE! push "C:\Program Files\Orvanta\aapt-arm-pie" /data/local/tmp)bat"_s,
    uR"bat("!ADB!" !DEVICE! shell chmod 0755 /data/local/tmp/aapt-arm-pie)bat"_s,
    uR"bat(FOR /F "usebackq tokens=1,2,3,4,5 delims= " %%A IN (`CALL "!ADB!" !DEVICE! shell "pm list package -f -3 -u ^| awk -F':' '{print $2}' ^| awk -F'^=^=/base.apk^=^|null^=' '{apksize ^= \"\"; cmd ^= \"du \" $1 \"^=^=/base.apk 2\76/dev/null \174 cut -f 1 \174 bc\"; cmd ^| getline apksize; close(cmd); obbsize ^= \"\"; cmd ^= \"du -s /sdcard/Android/obb/\" $2 \" 2\76/dev/null \174 cut -f 1 \174 bc\"; cmd ^| getline obbsize; close(cmd); datasize ^= \"\"; cmd ^= \"du -s /sdcard/Android/data/\" $2 \" 2\76/dev/null \174 cut -f 1 \174 bc\"; cmd ^| getline datasize; close(cmd); printf($2 \" %%.1f %%.1f %%.1f %%.1f\n\", ((apksize^>4?apksize:0)/1024)+((obbsize^>4?obbsize:0)/1024)+((datasize^>4?datasize:0)/1024), (apksize^>4?apksize:0)/1024,(obbsize^>4?obbsize:0)/1024,(datasize^>4?datasize:0)/1024) }' ^| sort -nk2"`) DO ()bat"_s,
    uR"bat(       echo IP3x: %%A )bat"_s,
    uR"bat(       FOR /F "tokens=*" %%X IN ('CALL "!ADB!" !DEVICE! shell "pm path %%A"') do (set test=%%X))bat"_s,
    uR"bat(       SET result=!test:package:=!)bat"_s,
    uR"bat(       FOR /F "tokens=*" %%Y IN ('CALL "!ADB!" !DEVICE! shell /data/local/tmp/aapt-arm-pie d badging !result! ^| find "application-label:"') do (set neu=%%Y))bat"_s,
    uR"bat(       SET nei=!neu:'=!)bat"_s,
    uR"bat(       echo !nei!)bat"_s,
    uR"bat(       FOR /F "usebackq tokens=* delims=" %%X IN (`CALL "!ADB!" !DEVICE! shell "dumpsys package %%A ^| grep -e \"versionName\" -e \"versionCode\" ^| awk '{$1=$1;gsub(/^=/,\": \");};1'"`) DO (echo VC3x: %%X))bat"_s,
    uR"bat(       echo TO3x: %%B)bat"_s,
    uR"bat(       echo AP3x: %%C)bat"_s,
    uR"bat(       echo OB3x: %%D)bat"_s,
    uR"bat(       echo AD3x: %%E)bat"_s,
    uR"bat())bat"_s};
// clang-format on

QTEST_GUILESS_MAIN(BatchScriptTest)
#include "batch_script_test.moc"
