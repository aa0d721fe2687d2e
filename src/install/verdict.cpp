#include "install/verdict.h"

#include <algorithm>

#include "adb/replies.h"
#include "adb/storage.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

using Kind = Outcome::Kind;
using Sign = Status::Sign;

/// `lead`, and what the outcome says, with the code that the headset has given.
Bilingual because(const Bilingual& lead, const Outcome& outcome) {
  const QString code = outcome.code.isEmpty() ? QString() : u" ["_s + outcome.code + u']';
  return {lead.chinese + u'：' + outcome.sentence.chinese + code,
          lead.english + u": "_s + outcome.sentence.english + code};
}

void addLine(Bilingual& text, const Bilingual& line) {
  const QString end = text.chinese.isEmpty() ? QString() : u"\n"_s;
  text = {text.chinese + end + line.chinese, text.english + end + line.english};
}

QString duration(qint64 milliseconds) {
  constexpr qint64 half = 500;
  const qint64 seconds = (milliseconds + half) / 1000;
  return u"%1:%2"_s.arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

QString counted(qsizetype files) {
  return files == 1 ? u"1 file"_s : u"%1 files"_s.arg(files);
}

qsizetype arrivedOf(const QList<SentFile>& files) {
  return std::count_if(files.begin(), files.end(), [](const SentFile& file) { return file.arrived(); });
}

/// Each file that is not there as it should be, a line each.
void addShortcomings(Bilingual& text, const InstallRun& run) {
  for (const SentFile& file : run.files) {
    if (file.arrived()) continue;
    if (file.differs()) {
      const QString here = readableSize(file.bytes) + u" (%1 bytes)"_s.arg(file.bytes);
      const QString there = readableSize(*file.onDevice) + u" (%1 bytes)"_s.arg(*file.onDevice);
      addLine(text, {u"%1：电脑上 %2，头显上 %3"_s.arg(file.name, here, there),
                     u"%1: %2 on this computer, %3 on the headset"_s.arg(file.name, here, there)});
    } else if (file.missing) {
      addLine(text,
              {u"%1：头显上没有"_s.arg(file.name), u"%1: the headset does not have it"_s.arg(file.name)});
    } else if (file.push && file.push->kind != Kind::Success) {
      addLine(text, because({file.name, file.name}, *file.push));
    } else {
      addLine(text, {u"%1：没有发送"_s.arg(file.name), u"%1: not sent"_s.arg(file.name)});
    }
  }
  const bool anyDiffers =
      std::any_of(run.files.begin(), run.files.end(), [](const SentFile& file) { return file.differs(); });
  // The next install would find the name and leave the file as it is.
  if (anyDiffers) {
    addLine(text,
            Bilingual{
                u"再次安装前，请先卸载，或在头显上删除大小不同的文件（Android/obb/%1）：同名文件会被跳过。"_s,
                u"Before the next try uninstall the app, or delete the files of another size on the "
                "headset (Android/obb/%1): a file of the same name is skipped."_s}
                .with(run.package));
  }
}

/// "3 个文件只到了 2 个" and the first reason for it.
Bilingual partly(const InstallRun& run) {
  const qsizetype arrived = arrivedOf(run.files);
  Bilingual text = {u"%1 个文件只到了 %2 个"_s.arg(run.files.size()).arg(arrived),
                    u"only %1 of %2 arrived"_s.arg(arrived).arg(counted(run.files.size()))};
  for (const SentFile& file : run.files) {
    if (file.arrived()) continue;
    if (file.differs())
      return {text.chinese + u"，大小不同："_s + file.name, text.english + u"; another size: "_s + file.name};
    if (file.push && !file.push->sentence.english.isEmpty()) return because(text, *file.push);
    return {text.chinese + u"，缺少："_s + file.name, text.english + u"; missing: "_s + file.name};
  }
  return text;
}

/// What has come over, and how long it took.
Bilingual figures(const InstallRun& run) {
  qint64 bytes = run.packageBytes;
  for (const SentFile& file : run.files) {
    if (file.push) bytes += file.bytes;
  }
  const QString size = readableSize(bytes);
  const QString time = duration(run.milliseconds);
  const auto files = run.files.size();
  const Bilingual with =
      files == 0 ? Bilingual() : Bilingual{u"和 %1 个文件"_s.arg(files), u" and "_s + counted(files)};
  return {with.chinese + u"，%1，用时 %2"_s.arg(size, time), with.english + u", %1 in %2"_s.arg(size, time)};
}

Status stoppedInstall(const InstallRun& run, bool installed) {
  Status status{Sign::Hint, {}};
  const qsizetype arrived = arrivedOf(run.files);
  if (!run.install) {
    status.sentence = {u"已取消：什么也没有发送"_s, u"Cancelled: nothing was sent"_s};
  } else if (!installed) {
    status.sentence = {u"已停止：安装没有得到确认"_s, u"Stopped: the install was not confirmed"_s};
  } else if (run.files.isEmpty()) {
    status.sentence = {u"已停止：应用已安装"_s, u"Stopped: the app is installed"_s};
  } else {
    status.sentence = {
        u"已停止：应用已安装，%1 个文件到了 %2 个"_s.arg(run.files.size()).arg(arrived),
        u"Stopped: the app is installed, %1 of %2 arrived"_s.arg(arrived).arg(counted(run.files.size()))};
    addShortcomings(status.details, run);
  }
  return status;
}

}  // namespace

void SentFile::noteSkipped(const QString& Listing, const ListedFiles& listed) {
  skipped = isOnDevice(name, Listing);
  onDevice = skipped ? listed.sizeOf(name) : std::nullopt;
  // The name may only be a part of a longer one.
  missing = skipped && !onDevice && !listed.isEmpty();
}

bool InstallRun::sentAny() const {
  return std::any_of(files.begin(), files.end(), [](const SentFile& file) { return file.push.has_value(); });
}

Status verdictOn(const InstallRun& run) {
  const bool installed = run.install && run.install->kind == Kind::Success;
  const bool refused = run.install && run.install->kind == Kind::Refused;
  if (!run.install || (run.stopped && !refused)) return stoppedInstall(run, installed);
  Status status;
  if (!installed) {
    status = {Sign::Error, because({u"没有安装"_s, u"Not installed"_s}, *run.install)};
    if (run.install->kind == Kind::Unclear || run.install->kind == Kind::Empty)
      status.sentence = because({u"安装没有得到确认"_s, u"The install was not confirmed"_s}, *run.install);
    if (!run.install->words.isEmpty()) status.details = {run.install->words, run.install->words};
    if (run.sentAny()) {
      const qsizetype arrived = arrivedOf(run.files);
      addLine(status.details, {u"扩展文件：%1 个到了 %2 个"_s.arg(run.files.size()).arg(arrived),
                               u"Expansion files: %1 of %2 arrived"_s.arg(arrived).arg(run.files.size())});
    }
    return status;
  }
  status.details = run.install->sentence;
  const Bilingual lead = {u"已安装 "_s + run.version, u"Installed "_s + run.version};
  if (arrivedOf(run.files) < run.files.size()) {
    const Bilingual rest = partly(run);
    status.sign = Sign::Warning;
    status.sentence = {lead.chinese + u"，但"_s + rest.chinese, lead.english + u", but "_s + rest.english};
    addShortcomings(status.details, run);
    return status;
  }
  const Bilingual amount = figures(run);
  status.sign = Sign::Good;
  status.sentence = {lead.chinese + amount.chinese, lead.english + amount.english};
  if (!run.listed) {
    addLine(status.details, {u"文件的大小没有核对：头显没有回答。"_s,
                             u"The sizes of the files were not checked: the headset gave no answer."_s});
  }
  return status;
}

Status verdictOn(const UninstallRun& run) {
  const Bilingual refused = {u"没有卸载"_s, u"Not uninstalled"_s};
  const bool gone = run.uninstall && run.uninstall->kind == Kind::Success;
  if (gone) {
    return {Sign::Good, run.dataKept ? Bilingual{u"已卸载，应用的数据保留在头显上"_s,
                                                 u"Uninstalled; the app's data stays on the headset"_s}
                                     : Bilingual{u"已卸载，数据也已删除"_s, u"Uninstalled, with its data"_s}};
  }
  if (run.stopped)
    return {Sign::Hint, {u"已停止：卸载没有得到确认"_s, u"Stopped: the uninstall was not confirmed"_s}};
  if (run.absent)
    return {Sign::Hint, {u"头显上没有安装此应用"_s, u"The app is not installed on the headset"_s}};
  if (run.unusableName || !run.uninstall)
    return {Sign::Error, {u"没有卸载：包名不可用"_s, u"Not uninstalled: no usable package name"_s}};
  Status status{Sign::Error, because(refused, *run.uninstall)};
  if (!run.uninstall->words.isEmpty()) status.details = {run.uninstall->words, run.uninstall->words};
  return status;
}

}  // namespace orvanta
