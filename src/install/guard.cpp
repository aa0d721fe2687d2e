#include "install/guard.h"

#include <QScopedValueRollback>

#include "adb/storage.h"
#include "core/workbench.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

Bilingual olderThan(const SendPlan& plan) {
  const auto filled = [&plan](const QString& text) { return text.arg(plan.newerBuild, plan.build); };
  return {
      filled(u"头显上的版本更新：Build %1，这个文件是 %2。头显通常会拒绝降级；先卸载会删除应用的数据。"_s),
      filled(u"The headset has the newer build %1; this file is %2. Headsets usually refuse an older one; "
             "uninstalling first would delete the app's data."_s)};
}

Bilingual largerThan(const SendPlan& plan, const StorageRoom& room) {
  const QString needed = readableSize(plan.packageBytes + plan.fileBytes);
  const QString available = readableSize(room.available.bytes);
  const auto filled = [&](const QString& text) { return text.arg(needed, available); };
  if (plan.files == 0)
    return {filled(u"空间可能不够：需要 %1，头显上次报告可用 %2。"_s),
            filled(u"There may be too little space: %1 needed, %2 free when the headset was last asked."_s)};
  const QString ofFiles = readableSize(plan.fileBytes);
  const auto withFiles = [&](const QString& text) { return filled(text).arg(plan.files).arg(ofFiles); };
  return {
      withFiles(u"空间可能不够：需要 %1（其中 %3 个扩展文件占 %4），头显上次报告可用 %2。"
                "头显上已有的文件，以及您在下一个窗口里跳过的，不占新的空间。"_s),
      withFiles(u"There may be too little space: %1 needed (%4 of it for expansion files: %3), %2 free when "
                "the headset was last asked. Files that it has already, or that you skip in the next window, "
                "need none."_s)};
}

QCoro::Task<bool> ask(Workbench& bench, QString text) {
  const QScopedValueRollback hold(bench.state.WatcherHold, true);
  MessageBox question;
  question.text = text;
  question.icon = BoxIcon::Warning;
  question.buttons = BoxButtons::YesNo;
  question.preselected = BoxAnswer::No;
  const BoxAnswer answer = co_await bench.desktop.showBox(question);
  co_return answer == BoxAnswer::Yes;
}

/// On lines of its own, in each language if both are shown.
QString paragraph(Bilingual text) {
  text.both = text.chinese + u"\r\n"_s + text.english;
  return text.shown() + u"\r\n\r\n"_s;
}

}  // namespace

QList<Bilingual> objectionsTo(const SendPlan& plan, const Headset& known) {
  QList<Bilingual> objections;
  if (!plan.newerBuild.isEmpty()) objections << olderThan(plan);
  // The figure is rounded; only what is certain is told.
  if (known.room &&
      known.room->available.bytes + known.room->available.uncertainty < plan.packageBytes + plan.fileBytes)
    objections << largerThan(plan, *known.room);
  return objections;
}

QCoro::Task<bool> mayBegin(Workbench& bench, SendPlan plan, std::function<void()> chooseDevice) {
  const qsizetype unchosen = bench.state.headset().unchosen;
  if (unchosen > 1) {
    const QString text = paragraph(
        {u"接有 %1 台设备，还没有选择要用哪一台，adb 不会安装。"_s.arg(unchosen),
         u"%1 devices are connected and none is chosen, so adb would not install."_s.arg(unchosen)});
    const bool chooses = co_await ask(bench, text + inFace(u"现在选择吗？"_s, u"Choose one now?"_s));
    if (chooses) chooseDevice();
    co_return false;
  }
  const QList<Bilingual> objections = objectionsTo(plan, bench.state.headset());
  if (objections.isEmpty()) co_return true;
  QString text = plan.name + u"\r\n\r\n"_s;
  for (const Bilingual& objection : objections) text += paragraph(objection);
  const bool goesOn = co_await ask(bench, text + inFace(u"仍要安装吗？"_s, u"Install anyway?"_s));
  co_return goesOn;
}

}  // namespace orvanta
