#include "adb/outcome.h"

#include <QList>
#include <QRegularExpression>

#include "adb/failure_codes.h"
#include "adb/replies.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

using Kind = Outcome::Kind;

/// Words of adb, of its server or of the headset that tell what is wrong.
struct Trouble {
  QString words;
  Kind kind;
  Bilingual sentence;
};

/// The most telling first: whatever broke the link is named before the lost link itself.
const QList<Trouble>& troubles() {
  static const Bilingual gone = {u"头显没有连接。请接好数据线，再试一次。"_s,
                                 u"The headset is not connected. Check the cable and try again."_s};
  static const Bilingual lost = {u"与头显的连接中断。请接好数据线，再试一次。"_s,
                                 u"The link to the headset was lost. Check the cable and try again."_s};
  static const Bilingual waiting = {u"头显还在建立连接。请稍等几秒，再试一次。"_s,
                                    u"The headset is still connecting. Wait some seconds and try again."_s};
  static const Bilingual several = {u"接有多台设备。请先选择一台。"_s,
                                    u"Several devices are connected. Choose one first."_s};
  static const Bilingual server = {u"adb 的后台服务没有运行。请重启 adb，再试一次。"_s,
                                   u"adb's server does not run. Restart adb and try again."_s};
  static const Bilingual full = {
      u"头显的空间不足。请删除一些应用或文件，再试一次。"_s,
      u"The headset has too little free space. Remove some apps or files and try again."_s};
  static const Bilingual forbidden = {u"头显不允许写入该位置。"_s,
                                      u"The headset does not allow files to be put there."_s};
  static const Bilingual noFile = {
      u"找不到电脑上的文件。它可能被移动、改名或删除。"_s,
      u"The file on this computer was not found. It may have been moved, renamed or deleted."_s};
  static const Bilingual notInstalled = {u"头显上没有安装此应用。"_s,
                                         u"The app is not installed on the headset."_s};
  static const Bilingual starting = {u"头显还在启动。请等它启动完毕，再试一次。"_s,
                                     u"The headset is still starting. Wait until it is up and try again."_s};
  static const QList<Trouble> rows = {
      {u"no devices/emulators found"_s, Kind::NotReached, gone},
      {u"device not found"_s, Kind::NotReached, gone},
      {u"error: device '"_s, Kind::NotReached, gone},  // 'SERIAL' not found
      {u"more than one device"_s, Kind::NotReached, several},
      {u"more than one emulator"_s, Kind::NotReached, several},
      {u"device unauthorized"_s,
       Kind::NotReached,
       {u"头显还没有允许这台电脑。请戴上头显，选择“允许”，再试一次。"_s,
        u"The headset has not allowed this computer yet. Put it on, choose “Allow” and try again."_s}},
      {u"still authorizing"_s, Kind::NotReached, waiting},
      {u"still connecting"_s, Kind::NotReached, waiting},
      {u"device offline"_s,
       Kind::NotReached,
       {u"头显没有回应（离线）。请拔下数据线再插上，再试一次。"_s,
        u"The headset does not respond (offline). Unplug the cable, plug it in again and try again."_s}},
      {u"insufficient permissions"_s,
       Kind::NotReached,
       {u"没有使用该 USB 设备的权限（udev 规则）。"_s,
        u"You may not use this USB device yet (udev rule)."_s}},
      {u"No space left on device"_s, Kind::Refused, full},
      {u"not enough space"_s, Kind::Refused, full},
      {u"INSTALL_GRANT_RUNTIME_PERMISSIONS"_s,
       Kind::Refused,
       {u"头显不允许在安装时授予权限。请取消勾选“授予权限”，再试一次。"_s,
        u"The headset does not let permissions be granted with the installation. Untick “Grant permissions” and try again."_s}},
      {u"Can't find service: package"_s, Kind::NotReached, starting},
      {u"Unknown package"_s, Kind::Refused, notInstalled},
      {u"failed to stat "_s, Kind::Refused, noFile},
      {u"cannot stat "_s, Kind::Refused, noFile},
      {u"cannot open "_s,
       Kind::Refused,
       {u"无法读取电脑上的文件。"_s, u"The file on this computer cannot be read."_s}},
      {u"Read-only file system"_s, Kind::Refused, forbidden},
      {u"Permission denied"_s, Kind::Refused, forbidden},
      {u"Operation not permitted"_s, Kind::Refused, forbidden},
      {u"Is a directory"_s,
       Kind::Refused,
       {u"头显上还没有要放入的文件夹。"_s, u"The folder on the headset is not there yet."_s}},
      {u"cannot connect to daemon"_s, Kind::NotReached, server},
      {u"failed to start daemon"_s, Kind::NotReached, server},
      {u"didn't ACK"_s, Kind::NotReached, server},
      {u"failed to check server version"_s, Kind::NotReached, server},
      {u"failed to read command"_s, Kind::NotReached, lost},
      {u"failed to read copy"_s, Kind::NotReached, lost},
      {u"couldn't read from device"_s, Kind::NotReached, lost},
      {u"connect error"_s, Kind::NotReached, lost},
      {u"protocol fault"_s, Kind::NotReached, lost},
      {u"Connection reset"_s, Kind::NotReached, lost},
      {u"error: closed"_s, Kind::NotReached, lost},
  };
  return rows;
}

/// What the headset refused with: the inside of "Failure [...]", which can have brackets of its own, or a
/// code on its own.
QString refusalIn(const QString& reply) {
  static const QRegularExpression bare(u"\\b(?:INSTALL|DELETE)_(?:PARSE_)?FAILED_[A-Z0-9_]+"_s);
  for (const QStringView line : QStringView(reply).tokenize(u'\n')) {
    for (const QStringView lead : {u"Failure [", u"could not be installed ["}) {
      const qsizetype start = line.indexOf(lead);
      const qsizetype end = line.lastIndexOf(u']');
      if (start >= 0 && end > start)
        return line.sliced(start + lead.size(), end - start - lead.size()).trimmed().toString();
    }
    if (line.trimmed() == u"Failure") return u"Failure"_s;
  }
  return bare.match(reply).captured();
}

Bilingual refusedWith(const QString& words) {
  return Bilingual{u"头显拒绝了：%1"_s, u"The headset refused: %1"_s}.with(words);
}

Outcome refused(const QString& refusal, PackageWork work) {
  static const QRegularExpression codeThenWords(u"^([A-Z][A-Z0-9_]+|-[0-9]+)(?:: *(?:\\1: *)?(.*))?$"_s);
  const QRegularExpressionMatch match = codeThenWords.match(refusal);
  Outcome outcome{Kind::Refused, match.captured(1), match.captured(2), {}};
  if (!match.hasMatch()) outcome.code = refusal;
  if (const auto known = failureCode(outcome.code, work)) {
    outcome.sentence = known->meaning;
  } else if (refusal.startsWith("not installed"_L1)) {
    outcome.sentence = {u"头显上没有安装此应用。"_s, u"The app is not installed on the headset."_s};
  } else {
    outcome.sentence = refusedWith(refusal);
  }
  return outcome;
}

bool hasLine(const QString& reply, QStringView wanted) {
  for (const QStringView line : QStringView(reply).tokenize(u'\n')) {
    if (line.trimmed() == wanted) return true;
  }
  return false;
}

/// What a reply with neither success nor a refusal's code means.
Outcome otherwise(const QString& reply) {
  Outcome outcome{Kind::Unclear, {}, tellingLine(withoutServerNotes(reply)), {}};
  if (outcome.words.isEmpty()) {
    outcome.kind = Kind::Empty;
    outcome.sentence = {u"adb 没有给出回答。"_s, u"adb gave no answer."_s};
    return outcome;
  }
  for (const Trouble& trouble : troubles()) {
    if (!reply.contains(trouble.words, Qt::CaseInsensitive)) continue;
    outcome.kind = trouble.kind;
    outcome.sentence = trouble.sentence;
    return outcome;
  }
  if (reply.contains("Exception"_L1)) {
    outcome.kind = Kind::Refused;
    outcome.sentence = refusedWith(outcome.words);
    return outcome;
  }
  outcome.sentence =
      Bilingual{u"adb 没有说成功。它的原话：%1"_s, u"adb did not say that it worked. It says: %1"_s}.with(
          outcome.words);
  return outcome;
}

Outcome packageOutcome(const QString& reply, PackageWork work) {
  if (const QString refusal = refusalIn(reply); !refusal.isEmpty()) return refused(refusal, work);
  if (hasLine(reply, u"Success")) return {Kind::Success, {}, {}, {}};
  return otherwise(reply);
}

}  // namespace

Outcome installOutcome(const QString& reply) {
  Outcome outcome = packageOutcome(reply, PackageWork::Install);
  if (outcome.kind != Kind::Unclear) return outcome;
  if (hasLine(reply, u"Completed with warning(s)")) {
    return {Kind::Success,
            {},
            outcome.words,
            {u"已安装，头显给出了警告。"_s, u"Installed; the headset gave warnings."_s}};
  }
  // The link was lost before the reason came.
  const QStringView end = QStringView(reply).trimmed();
  if (end.endsWith(u':') && end.sliced(end.lastIndexOf(u'\n') + 1).contains(u"failed to install ")) {
    outcome.kind = Kind::NotReached;
    outcome.sentence = {u"与头显的连接中断。请接好数据线，再试一次。"_s,
                        u"The link to the headset was lost. Check the cable and try again."_s};
  }
  return outcome;
}

Outcome uninstallOutcome(const QString& reply) {
  return packageOutcome(reply, PackageWork::Uninstall);
}

Outcome pushOutcome(const QString& reply) {
  static const QRegularExpression summary(u"(?:^|[^0-9])([0-9]+) files? pushed"_s);
  const QString pushed = summary.match(reply).captured(1);
  if (!pushed.isEmpty() && pushed != u"0"_s && !reply.contains("error: "_L1))
    return {Kind::Success, {}, {}, {}};
  return otherwise(reply);
}

}  // namespace orvanta
