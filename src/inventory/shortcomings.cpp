#include "inventory/shortcomings.h"

#include <algorithm>

#include "inventory/progress.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr qsizetype longestWords = 300;

/// The last line in which a tool complains; the report of a push does not count.
QString complaintIn(const QList<QString>& words) {
  for (auto line = words.rbegin(); line != words.rend(); ++line) {
    const bool report = line->contains(u" pushed"_s) || line->startsWith(u'[') || countIn(*line);
    if (!report) return line->left(longestWords);
  }
  return {};
}

/// If nothing could be measured, all sizes are 0.0, as they are if all apps are tiny. In the first case du
/// has complained, on the hosts whose script shows that.
bool hasSizes(const InventoryOutcome& outcome) {
  const auto isOfDu = [](const QString& line) { return line.contains(u"du: "_s); };
  return outcome.anySpace ||
         (outcome.anySize && std::none_of(outcome.words.begin(), outcome.words.end(), isOfDu));
}

QString withWords(const QString& sentence, const QString& words) {
  return words.isEmpty() ? sentence : sentence + u": "_s + words;
}

}  // namespace

QString shortcomingsOf(const InventoryOutcome& outcome) {
  if (!outcome.scriptFailure.isEmpty())
    return withWords(inFace(u"无法写入脚本"_s, u"The script could not be written"_s), outcome.scriptFailure);
  const auto count = countIn(outcome.AppCountText);
  if (outcome.stopped) return inFace(u"已停止，列表不完整"_s, u"Stopped: the list is not complete"_s);
  const QString complaint = complaintIn(outcome.words);
  if (outcome.apps == 0 && count == 0)
    return inFace(u"设备上没有应用"_s, u"There are no apps on the device"_s);
  if (outcome.apps == 0) return withWords(inFace(u"没有读到应用"_s, u"No app could be read"_s), complaint);
  if (count && outcome.apps < *count)
    return withWords(inFace(u"只读到 %1 / %2 个应用"_s, u"Only %1 of %2 apps could be read"_s)
                         .arg(outcome.apps)
                         .arg(*count),
                     complaint);
  // The count leaves out apps that the script lists, so it is not proof by itself.
  if (outcome.cut) return withWords(inFace(u"列表不完整"_s, u"The list is not complete"_s), complaint);
  if (!hasSizes(outcome))
    return withWords(inFace(u"设备没有给出大小"_s, u"The device did not tell the sizes"_s), complaint);
  if (!outcome.hasBadgingTool)
    return inFace(u"缺少 aapt-arm-pie，没有应用名称"_s,
                  u"aapt-arm-pie is missing beside the program: no app names"_s);
  if (!outcome.anyLabel)
    return withWords(inFace(u"设备没有给出应用名称"_s, u"The device did not tell the app names"_s),
                     complaint);
  return {};
}

}  // namespace orvanta
