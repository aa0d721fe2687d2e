#include "backups/restore_plan.h"

#include <algorithm>
#include <array>

#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString lineOf(const QString& chinese, const QString& english, const QString& value) {
  return inFace(chinese, english) + u": "_s + value + u"\r\n"_s;
}

QString amount(const BackupManifest& manifest, const QString& part) {
  return inFace(u"%1 个文件，%2"_s, u"%1 files, %2"_s, u"%1 files, %2"_s)
      .arg(manifest.filesOf(part).size())
      .arg(readableSize(manifest.bytes(part)));
}

QStringList firstFew(const QStringList& lines) {
  constexpr qsizetype shown = 3;
  QStringList few = lines.first(std::min(shown, lines.size()));
  if (lines.size() > shown) few << u"… (+%1)"_s.arg(lines.size() - shown);
  return few;
}

bool RestorePlan::isDowngrade() const {
  bool known = false;
  bool ours = false;
  const qint64 there = onHeadset.build.toLongLong(&known);
  const qint64 build = saved.manifest.build.toLongLong(&ours);
  return known && ours && there > build && !saved.manifest.filesOf(u"apk"_s).isEmpty();
}

bool RestorePlan::lacksRoom() const {
  return onHeadset.room &&
         onHeadset.room->available.bytes + onHeadset.room->available.uncertainty < saved.manifest.bytes();
}

bool RestorePlan::meetsData() const {
  return !onHeadset.data.isEmpty() && !saved.manifest.filesOf(u"data"_s).isEmpty();
}

QString RestorePlan::text() const {
  const BackupManifest& manifest = saved.manifest;
  QString text = inFace(u"还原到头显？"_s, u"Restore to the headset?"_s) + u"\r\n\r\n"_s + saved.title() +
                 u"\r\n"_s + manifest.package + u"\r\n\r\n"_s;
  if (manifest.date.isValid())
    text += lineOf(u"备份于"_s, u"saved"_s,
                   manifest.date.toString(u"yyyy-MM-dd HH:mm"_s) + u", "_s + manifest.headsetModel + u' ' +
                       manifest.headsetSerial);
  if (onHeadset.packageFiles.isEmpty()) {
    text += lineOf(u"头显上"_s, u"on the headset"_s, inFace(u"未安装"_s, u"not installed"_s));
  } else {
    text += lineOf(u"头显上"_s, u"on the headset"_s, onHeadset.version + u" (%1)"_s.arg(onHeadset.build));
  }
  if (isDowngrade())
    text += u"⚠ "_s +
            inFace(u"头显上的更新，头显会拒绝较旧的；要还原请先卸载"_s,
                   u"the one on the headset is newer, and it will refuse this one; to restore, "
                   "uninstall it first"_s) +
            u"\r\n"_s;
  const std::array parts = {
      std::pair(u"apk"_s, Bilingual{u"安装"_s, u"to install"_s}),
      std::pair(u"obb"_s, Bilingual{u"OBB 扩展文件"_s, u"expansion files"_s, u"OBB (expansion files)"_s}),
      std::pair(u"data"_s, Bilingual{u"应用数据"_s, u"app data"_s})};
  for (const auto& [part, name] : parts)
    if (!manifest.filesOf(part).isEmpty()) text += name.shown() + u": "_s + amount(manifest, part) + u" "_s;
  text += lineOf(u"需要空间"_s, u"space needed"_s, readableSize(manifest.bytes()));
  if (onHeadset.room)
    text += lineOf(u"可用空间"_s, u"space free"_s, readableSize(onHeadset.room->available.bytes));
  if (lacksRoom())
    text += u"⚠ "_s + inFace(u"空间可能不够"_s, u"there may not be enough space"_s) + u"\r\n"_s;
  if (!manifest.unreadable.isEmpty())
    text += lineOf(u"备份里没有"_s, u"not in the backup"_s, firstFew(manifest.unreadable).join(u"; "_s));
  if (saved.kind != SavedApp::Kind::Whole)
    text += inFace(u"没有清单，内容无法核对"_s, u"there is no manifest: the content cannot be checked"_s) +
            u"\r\n"_s;
  return text.trimmed();
}

}  // namespace orvanta
