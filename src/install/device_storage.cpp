#include "install/device_storage.h"

#include "adb/device_names.h"
#include "adb/lines.h"
#include "adb/replies.h"
#include "adb/storage.h"
#include "core/workbench.h"
#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {
constexpr qsizetype longestReason = 300;
}

QCoro::Task<StorageAnswer> askStorage(Workbench& bench) {
  const QString query = storageQueryLine(Host::current());
  const QString reply = co_await bench.runQuietly(bench.objDOS, query);
  StorageAnswer answer;
  answer.complete = reply.size() >= 2;
  answer.path = externalStorageIn(reply);
  answer.reply = reply;
  co_return answer;
}

QCoro::Task<StorageAnswer> removeObbFolder(Workbench& bench, QString package) {
  const StorageAnswer storage = co_await askStorage(bench);
  if (bench.turn.stopped()) co_return storage;
  if (package.isEmpty() || !isFitPackageName(package) ||
      (storage.complete && !isPlainDevicePath(storage.path))) {
    bench.say(inFace(u"没有删除设备上的文件夹：路径不明确"_s,
                     u"Nothing was removed on the device: the path is not certain"_s));
    co_return storage;
  }
  std::optional<QString> line;
  if (storage.complete) line = removalLine(Host::current(), obbFolder(storage.path, package));
  co_await bench.runQuietly(bench.objDOS, line);
  co_return storage;
}

QCoro::Task<bool> mayRemoveObbFolder(Workbench& bench, QString package, QString reply, QString unreported) {
  if (bench.turn.stopped()) co_return false;
  if (saysSuccess(reply)) co_return true;
  const QString reason = tellingLine(withoutServerNotes(reply));
  if (reason.isEmpty()) co_return false;
  MessageBox question;
  question.text = unreported + u":\r\n"_s + reason.left(longestReason) + u"\r\n\r\n"_s +
                  inFace(u"接下来会删除设备上已安装应用的扩展文件"_s,
                         u"The expansion files of the installed app would now be removed"_s) +
                  u":\r\n/Android/obb/"_s + package + u"\r\n\r\n"_s +
                  inFace(u"要删除吗？"_s, u"Remove them?"_s);
  question.icon = BoxIcon::Warning;
  question.buttons = BoxButtons::YesNo;
  question.preselected = BoxAnswer::No;
  const BoxAnswer answer = co_await bench.desktop.showBox(question);
  co_return answer == BoxAnswer::Yes;
}

void sayFolderRemoval(Workbench& bench, const QString& package) {
  bench.say(designed(u"删除设备上存在的文件夹：") + QString(31, u' ') + u"/Android/obb/"_s + package);
}

}  // namespace orvanta
