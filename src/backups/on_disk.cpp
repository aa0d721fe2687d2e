#include "backups/on_disk.h"

#include <memory>

#include "platform/awaited.h"
#include "platform/file_sync.h"

namespace orvanta {

QCoro::Task<bool> isOnDisk(QString path) {
  bool synced = false;
  const std::unique_ptr<QThread> thread(QThread::create([&synced, &path] { synced = syncToDisk(path); }));
  thread->start();
  co_await Ended(thread.get());
  co_return synced;
}

}  // namespace orvanta
