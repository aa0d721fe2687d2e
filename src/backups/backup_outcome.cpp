#include "backups/backup_outcome.h"

#include <algorithm>

#include "adb/storage.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

Bilingual reasonOf(BackupOutcome::Kind kind) {
  switch (kind) {
    case BackupOutcome::Kind::Saved:
      return {u"已备份"_s, u"backed up"_s};
    case BackupOutcome::Kind::Stopped:
      return {u"已停止，再备份到同一文件夹会接着进行"_s,
              u"stopped; another backup to the same folder goes on from here"_s};
    case BackupOutcome::Kind::Lost:
      return {
          u"头显没有回答，重新连接后备份到同一文件夹会接着进行"_s,
          u"the headset does not answer; once it does, another backup to the same folder goes on from here"_s};
    case BackupOutcome::Kind::NotInstalled:
      return {u"头显上没有这个应用"_s, u"the headset does not have this app"_s};
    case BackupOutcome::Kind::NoRoom:
      return {u"电脑磁盘空间不足"_s, u"not enough room on this computer's disk"_s};
    case BackupOutcome::Kind::NotWritable:
      return {u"文件夹不能写入"_s, u"the folder cannot be written"_s};
    case BackupOutcome::Kind::Incomplete:
      return {u"备份不完整，有的文件没有传完或正在改变，请关闭应用后再备份一次"_s,
              u"not complete: files did not come or are changing; close the app and back it up again"_s};
    case BackupOutcome::Kind::UnfitName:
      return {u"包名不可用"_s, u"no usable package name"_s};
  }
  return {};
}

}  // namespace

QString someNames(const QStringList& names) {
  constexpr qsizetype shown = 3;
  QString text = names.first(std::min(shown, names.size())).join(u", "_s);
  if (names.size() > shown) text += u" … (+%1)"_s.arg(names.size() - shown);
  return text;
}

QString BackupOutcome::text() const {
  QString line = kind == Kind::Saved ? u"✓ "_s : u"✗ "_s;
  line += app.name() + u": "_s + reasonOf(kind).shown();
  if (kind == Kind::Saved)
    line +=
        u", "_s +
        inFace(u"%1 个文件，%2"_s, u"%1 files, %2"_s, u"%1 files, %2"_s).arg(files).arg(readableSize(bytes));
  if (!words.isEmpty()) line += u": "_s + words;
  if (!unreadable.isEmpty())
    line += u" · "_s +
            inFace(u"头显不让读取，备份里没有"_s, u"not readable on the headset, and not in the backup"_s) +
            u": "_s + someNames(unreadable);
  return line;
}

}  // namespace orvanta
