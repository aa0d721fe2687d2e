#include "install/device_storage.h"

#include "core/main_window.h"
#include "core/tools.h"
#include "install/command_lines.h"
#include "monitor/storage_figures.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QCoro::Task<StorageAnswer> askStorage(apkinfo& form) {
  const QString query = storageQueryLine(Host::current());
  const QString reply = co_await form.runQuietly(*form.objDOS, query);
  StorageAnswer answer;
  answer.complete = reply.size() >= 2;
  answer.path = externalStorageIn(reply);
  answer.reply = reply;
  co_return answer;
}

QCoro::Task<StorageAnswer> removeObbFolder(apkinfo& form, QString package) {
  const StorageAnswer storage = co_await askStorage(form);
  if (form.turn().stopped()) co_return storage;
  if (package.isEmpty() || !isFitPackageName(package) ||
      (storage.complete && !isPlainDevicePath(storage.path))) {
    form.say(
        u"没有删除设备上的文件夹：路径不明确 (Nothing was removed on the device: the path is not certain)"_s);
    co_return storage;
  }
  std::optional<QString> line;
  if (storage.complete) line = removalLine(Host::current(), obbFolder(storage.path, package));
  co_await form.runQuietly(*form.objDOS, line);
  co_return storage;
}

void sayFolderRemoval(apkinfo& form, const QString& package) {
  form.say(u"删除设备上存在的文件夹："_s + QString(31, u' ') + u"/Android/obb/"_s + package);
}

}  // namespace orvanta
