#include "monitor/storage_report.h"

#include "core/main_window.h"
#include "core/tools.h"
#include "monitor/storage_figures.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QCoro::Task<> StorageReport(apkinfo& form, DOSOutputs& runner) {
  const quint64 asked = form.turn().count();
  const QString query = storageQueryLine(Host::current());
  const QString reply = co_await form.runQuietly(runner, query);
  if (form.turn().count() != asked) co_return;
  // Too short a reply has no line end to cut: no second line comes of it, and the first one runs again. One
  // that is no path (an error text, or the greeting of a server that was just started) stays off the device's
  // shell; without a figure the watcher soon asks again.
  QString output;
  const QString storage = externalStorageIn(reply);
  if (reply.size() < 2) {
    output = co_await form.runQuietly(runner, std::nullopt);
  } else if (isPlainDevicePath(storage)) {
    const QString line = diskFreeLine(Host::current(), storage);
    output = co_await form.runQuietly(runner, line);
  }
  if (form.turn().count() != asked) co_return;

  const std::array<QString, 5> figures = storageFiguresIn(output);
  form.Label7->setCaption(figures[1] + u" Gb"_s);
  form.Label8->setCaption(figures[2] + u" Gb"_s);
  const auto rest = freeSpace(figures[1], figures[2]);
  if (rest) form.Label9->setCaption(QString::number(*rest) + u" Gb"_s);
  form.Label10->setCaption(figures[4] + u" %"_s);
}

}  // namespace orvanta
