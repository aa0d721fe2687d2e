#include "inventory/script.h"

#include "adb/host.h"
#include "platform/command_line.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

// %APP% stands for the application folder. Carets belong to the command processor, \" to the splitting of
// adb's arguments, \76 and \174 to awk on the device.
constexpr QStringView batchText =
    uR"bat(@echo OFF
SET ADB=%APP%\adb.exe
SETLOCAL EnableDelayedExpansion
"!ADB!" !DEVICE! push "%APP%\aapt-arm-pie" /data/local/tmp
"!ADB!" !DEVICE! shell chmod 0755 /data/local/tmp/aapt-arm-pie
FOR /F "usebackq tokens=1,2,3,4,5 delims= " %%A IN (`CALL "!ADB!" !DEVICE! shell "pm list package -f -3 -u ^| awk -F':' '{print $2}' ^| awk -F'^=^=/base.apk^=^|null^=' '{apksize ^= \"\"; cmd ^= \"du \" $1 \"^=^=/base.apk 2\76/dev/null \174 cut -f 1 \174 bc\"; cmd ^| getline apksize; close(cmd); obbsize ^= \"\"; cmd ^= \"du -s /sdcard/Android/obb/\" $2 \" 2\76/dev/null \174 cut -f 1 \174 bc\"; cmd ^| getline obbsize; close(cmd); datasize ^= \"\"; cmd ^= \"du -s /sdcard/Android/data/\" $2 \" 2\76/dev/null \174 cut -f 1 \174 bc\"; cmd ^| getline datasize; close(cmd); printf($2 \" %%.1f %%.1f %%.1f %%.1f\n\", ((apksize^>4?apksize:0)/1024)+((obbsize^>4?obbsize:0)/1024)+((datasize^>4?datasize:0)/1024), (apksize^>4?apksize:0)/1024,(obbsize^>4?obbsize:0)/1024,(datasize^>4?datasize:0)/1024) }' ^| sort -nk2"`) DO (
       echo IP3x: %%A )bat"
    uR"bat(
       FOR /F "tokens=*" %%X IN ('CALL "!ADB!" !DEVICE! shell "pm path %%A"') do (set test=%%X)
       SET result=!test:package:=!
       FOR /F "tokens=*" %%Y IN ('CALL "!ADB!" !DEVICE! shell /data/local/tmp/aapt-arm-pie d badging !result! ^| find "application-label:"') do (set neu=%%Y)
       SET nei=!neu:'=!
       echo !nei!
       FOR /F "usebackq tokens=* delims=" %%X IN (`CALL "!ADB!" !DEVICE! shell "dumpsys package %%A ^| grep -e \"versionName\" -e \"versionCode\" ^| awk '{$1=$1;gsub(/^=/,\": \");};1'"`) DO (echo VC3x: %%X)
       echo TO3x: %%B
       echo AP3x: %%C
       echo OB3x: %%D
       echo AD3x: %%E
)
)bat";

// Runs on the device, in mksh or whatever its sh is; needs of its tools only what Android 7 already had: pm,
// dumpsys, du, sort and sed. awk and bc came later. Everything is one pipeline: the apps with their sizes,
// sorted, then app by app what the other tools print about it.
//
// Sizes: what du prints, in KiB, counts above 4 only. `tenths` rounds KiB / 1024 to one decimal, the exact
// halves (.25 and .75 MiB) to the even digit as printf does; whole numbers, since sh has no others, and in a
// form that 32 bits hold.
//
// du's complaints are dropped, since many apps have no folder to measure. Only if du says nothing about an
// installed app do its first words go to the user, outside the list.
//
// The tools get no input: they would consume the list that the loop reads.
constexpr QStringView deviceText =
    uR"sh(
tenths() { t=$(($1 / 1024 * 10 + ($1 % 1024 == 256 ? 2 : ($1 % 1024 * 10 + 512) / 1024))); }
size() { tenths $1; s=$((t / 10)).$((t % 10)); }
[ -z "$tool" ] || chmod 0755 "$tool"
pm list packages -f -3 -u </dev/null | while IFS= read -r line; do
  name=${line##*=}
  path=${line#package:}
  path=${path%=*}
  case $line in package:*=*) ;; *) continue ;; esac
  case $name in '' | *[!A-Za-z0-9._-]*) continue ;; esac
  case $path in null) path= ;; esac
  du -sk ${path:+"$path"} "/sdcard/Android/obb/$name" "/sdcard/Android/data/$name" </dev/null 2>&1 | {
    apk=0 obb=0 data=0 told= words=
    while read -r kib where; do
      case $kib in '' | *[!0-9]*) words=${words:-$kib $where}; continue ;; esac
      told=1
      [ "$kib" -gt 4 ] || continue
      case $where in
        /sdcard/Android/obb/*) obb=$kib ;;
        /sdcard/Android/data/*) data=$kib ;;
        *) apk=$kib ;;
      esac
    done
    [ -n "$told" ] || [ -z "$path" ] || echo "${words:-du: $path}" >&2
    tenths $((apk + obb + data))
    key=$t
    size $((apk + obb + data)); total=$s
    size $apk; apk=$s
    size $obb; obb=$s
    size $data
    echo "$key $name $total $apk $obb $s $path"
  }
done | sort -n | while read -r key name total apk obb data path; do
  echo "IP3x: $name "
  { [ -z "$tool" ] || [ -z "$path" ] || "$tool" d badging "$path" 2>/dev/null
    echo application-label:
  } </dev/null | sed -n -e '/^application-label:/{' -e "s/'//g" -e p -e q -e '}'
  dumpsys package "$name" </dev/null 2>/dev/null |
    sed -n -e '/^ *version[CN][a-z]*=/{' -e 's/ *$//' -e 's/^ *//' -e 's/  */ /g' -e 's/=/: /g' \
      -e '/minSdk/!s/^versionCode: [0-9]*/& minSdk:/' -e 's/^/VC3x: /' -e p -e '}'
  echo "TO3x: $total"
  echo "AP3x: $apk"
  echo "OB3x: $obb"
  echo "AD3x: $data"
done
)sh";

}  // namespace

QString inventoryLine(const Host& host, bool hasTool) {
  const QString tool = hasTool ? deviceBadgingTool.toString() : QString();
  return AdbPrefix(host) + u" shell "_s + quotedArgument(u"tool=%1;"_s.arg(tool) + deviceText.toString());
}

QString badgingToolPath(const QString& applicationFolder) {
  return applicationFolder + u"/aapt-arm-pie"_s;
}

QString inventoryScript(const Host& host) {
  return host.style.separator == u'\\' ? batchInventoryScript(host.applicationFolder)
                                       : shellInventoryScript(host.applicationFolder);
}

QString batchInventoryScript(const QString& applicationFolder) {
  // The folder last: it may contain what looks like the mark or a line end.
  return batchText.toString().replace(u'\n', u"\r\n"_s).replace(u"%APP%"_s, applicationFolder);
}

// DEVICE is set by the user only: options for adb, such as -s and a serial number.
QString shellInventoryScript(const QString& applicationFolder) {
  return u"#!/bin/sh\nadb=%1\ntool=%2\n"_s.arg(shellWord(applicationFolder + u"/adb"_s),
                                               shellWord(badgingToolPath(applicationFolder))) +
         u"device_tool=\n"
         "if [ -f \"$tool\" ]; then\n"
         "  \"$adb\" ${DEVICE-} push \"$tool\" /data/local/tmp\n"
         "  device_tool=%1\n"
         "fi\n"
         "\"$adb\" ${DEVICE-} shell \"tool=$device_tool;\"%2\n"_s.arg(deviceBadgingTool,
                                                                      shellWord(deviceText.toString()));
}

}  // namespace orvanta
