#include "monitor/storage_report.h"

#include "adb/device_names.h"
#include "adb/lines.h"
#include "adb/storage.h"
#include "core/workbench.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QCoro::Task<> StorageReport(Workbench& bench, DOSOutputs& runner) {
  const quint64 asked = bench.turn.count();
  const QString query = storageQueryLine(Host::current());
  const QString reply = co_await bench.runQuietly(runner, query);
  if (bench.turn.count() != asked) co_return;
  // A reply that is too short has no line end to cut: no second line can be composed, and the first one runs
  // again. A reply that is not a path (an error, or a starting server's greeting) must not reach the device's
  // shell; without figures the watcher soon asks again.
  QString output;
  const QString storage = externalStorageIn(reply);
  if (reply.size() < 2) {
    output = co_await bench.runQuietly(runner, std::nullopt);
  } else if (isPlainDevicePath(storage)) {
    const QString line = diskFreeLine(Host::current(), storage);
    output = co_await bench.runQuietly(runner, line);
  }
  if (bench.turn.count() != asked) co_return;

  const std::array<QString, 5> figures = storageFiguresIn(output);
  StorageShown shown{figures[1], figures[2], bench.state.headset().storage.free, figures[4],
                     storageRoomIn(output)};
  if (const auto rest = freeSpace(figures[1], figures[2])) shown.free = QString::number(*rest);
  bench.state.setStorage(shown);
}

}  // namespace orvanta
