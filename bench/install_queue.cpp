// The queue's window while it installs many large packages over a slow link, and the cable comes off twice:
// how long the window stands still at most, against the same loop with nothing to do, and how much memory
// comes along. Arguments: packages, mebibytes in each, and bytes a second of the link; 10, 1024 and 100000000
// unless given.

#include <zip.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>
#include <cstdio>
#include <filesystem>

#include "queue/queue_window.h"
#include "sample_package.h"
#include "testing/virtual_headset.h"
#include "yes_desktop.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

constexpr qint64 longestStall = 50;  // milliseconds
constexpr double mostMemory = 1.2;   // of what it was before

/// Makes a package of that size without holding it in memory.
bool makeLarge(const QString& file, qint64 bytes) {
  if (!SamplePackage{.package = u"com.example.large"_s}.write(file).isEmpty()) return false;
  QFile hole(file + u".hole"_s);
  if (!hole.open(QIODevice::WriteOnly) || !hole.resize(bytes)) return false;
  zip_t* archive = zip_open(file.toUtf8().constData(), 0, nullptr);
  if (!archive) return false;
  zip_source_t* source = zip_source_file(archive, hole.fileName().toUtf8().constData(), 0, -1);
  const zip_int64_t index = zip_file_add(archive, "assets/data.bin", source, 0);
  zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), ZIP_CM_STORE, 0);
  return zip_close(archive) == 0 && hole.remove();
}

qint64 residentBytes() {
  QFile figures(u"/proc/self/statm"_s);
  if (!figures.open(QIODevice::ReadOnly)) return 0;
  return figures.readAll().split(' ').value(1).toLongLong() * 4096;
}

/// The longest time between two rounds of the event loop.
class Stalls : public QObject {
 public:
  Stalls() {
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, this, [this] {
      longest = qMax(longest, m_since.restart() - every);
      memory = qMax(memory, residentBytes());
    });
    m_since.start();
    m_timer.start(every);
  }
  qint64 longest = 0;
  qint64 memory = 0;

 private:
  static constexpr int every = 5;
  QTimer m_timer;
  QElapsedTimer m_since;
};

template <class Done>
void loopUntil(Done done) {
  while (!done()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  const QStringList words = QCoreApplication::arguments().mid(1);
  const int packages = words.value(0, u"10"_s).toInt();
  const qint64 bytes = words.value(1, u"1024"_s).toLongLong() << 20;

  test::VirtualHeadset headset;
  if (const QString failure = headset.start(); !failure.isEmpty()) {
    std::fprintf(stderr, "%s\n", qPrintable(failure));
    return 2;
  }
  const QString first = headset.workPath(u"0.apk"_s);
  if (!makeLarge(first, bytes)) return 2;
  QStringList paths = {first};
  for (int i = 1; i < packages; ++i) {
    paths << headset.workPath(QString::number(i) + u".apk"_s);
    std::filesystem::create_hard_link(first.toStdString(), paths.last().toStdString());
  }
  headset.setFault(u"bytes_per_second"_s, words.value(2, u"100000000"_s));

  YesDesktop desktop;
  Workbench bench(desktop);
  InstallQueue queue(bench, {});
  QueueWindow window(queue, desktop, nullptr);
  window.show();
  qint64 idle = 0;
  {
    const Stalls stalls;
    QElapsedTimer time;
    time.start();
    loopUntil([&time] { return time.elapsed() > 5000; });
    idle = stalls.longest;
  }
  const qint64 memory = residentBytes();
  const Stalls stalls;
  queue.add(paths);
  loopUntil([&queue] { return !queue.isBusy() && !queue.items().empty(); });
  // The cable comes off in the second package and in the fourth.
  int pulled = 0;
  QObject::connect(&queue, &InstallQueue::progressed, &queue, [&] {
    const qint64 at = queue.doneBytes() / (bytes / 2);
    if ((at == 3 && pulled == 0) || (at == 7 && pulled == 1)) {
      ++pulled;
      headset.setFault(u"state"_s, u"gone"_s);
      QTimer::singleShot(3000, &queue, [&headset] { headset.clearFault(u"state"_s); });
    }
  });
  QElapsedTimer time;
  time.start();
  queue.start();
  loopUntil([&queue] { return !queue.isBusy(); });
  qsizetype good = 0;
  for (const QueueItem& item : queue.items()) good += item.state == QueueItem::Stage::Done ? 1 : 0;
  const double growth = double(stalls.memory) / double(memory);
  std::printf("%lld of %d packages of %lld MiB in %lld s, the cable off %d times\n",
              static_cast<long long>(good), packages, static_cast<long long>(bytes >> 20),
              static_cast<long long>(time.elapsed() / 1000), pulled);
  std::printf("longest stall: %lld ms (at most %lld); idle: %lld ms\n",
              static_cast<long long>(stalls.longest), static_cast<long long>(longestStall),
              static_cast<long long>(idle));
  std::printf("memory: %.2f of %lld MiB (at most %.2f)\n", growth, static_cast<long long>(memory >> 20),
              mostMemory);
  return good == packages && stalls.longest <= longestStall && growth <= mostMemory ? 0 : 1;
}
