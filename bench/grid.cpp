// The window of the installed apps with 10,000 of them: each step against its limit in milliseconds.

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QHeaderView>
#include <QMouseEvent>
#include <cstdio>
#include <functional>

#include "core/turn.h"
#include "inventory/apps_form.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

constexpr int apps = 10000;
constexpr long mostMemoryKiB = 150 * 1024;

class NoReports : public CommandReports {
 public:
  QCoro::Task<> startFailed(QString, QString, QString) override { co_return; }
  QCoro::Task<> criticalMessage(QString) override { co_return; }
};

QString stream() {
  QString text;
  for (int i = 0; i < apps; ++i) {
    const int n = i * 7919 % 10007;
    text +=
        u"IP3x: com.example.studio%1.app%2 \r\napplication-label:应用 %2 Ünder\r\n"
        "VC3x: versionCode: %2 minSdk: 23\r\nVC3x: versionName: 1.%1.%2\r\nTO3x: %2.3\r\nAP3x: %1.0\r\n"
        "OB3x: 0.2\r\nAD3x: 0.1\r\n"_s.arg(i % 97)
            .arg(n);
  }
  return text;
}

bool measure(const QString& name, double limit, int times, const std::function<void()>& step) {
  double worst = 0;
  for (int i = 0; i < times; ++i) {
    QElapsedTimer timer;
    timer.start();
    step();
    worst = std::max(worst, static_cast<double>(timer.nsecsElapsed()) / 1e6);
  }
  std::printf("%-28s %7.1f ms at worst (at most %.0f)%s\n", qPrintable(name), worst, limit,
              worst <= limit ? "" : "  TOO SLOW");
  return worst <= limit;
}

long mostMemory() {
  QFile status(u"/proc/self/status"_s);
  if (!status.open(QIODevice::ReadOnly)) return 0;
  for (const QByteArray& line : status.readAll().split('\n')) {
    if (line.startsWith("VmHWM:")) return line.mid(6).trimmed().split(' ').constFirst().toLong();
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  NoReports reports;
  Turn turn;
  Form4 form(reports, turn);
  FlexGrid& grid = *form.MSFlexGrid1;
  form.prepareLoad();
  const QString text = stream();
  const Inventory inventory = readInventory(text);

  bool good = measure(u"from the parse to the screen"_s, 300, 1, [&] {
    form.fill(inventory);
    form.show();
    QCoreApplication::processEvents();
    form.grab();
  });
  for (int col = 0; col < inventoryColumns; ++col) {
    good &= measure(u"sort column %1"_s.arg(col), 100, 4,
                    [&grid, col] { Q_EMIT grid.horizontalHeader()->sectionClicked(col); });
  }
  for (const QString& search : {u"APP12"_s, u"nowhere"_s, u""_s}) {
    form.txtSearch->setText(search);
    good &= measure(u"search \"%1\""_s.arg(search), 50, 4, [&form] { form.ApplySearchFilter(); });
  }
  int step = 0;
  good &= measure(u"hover, with its painting"_s, 16, 500, [&] {
    ++step;
    const QPointF place(20 + step * 37 % 500, 10 + step * 13 % 400);
    QMouseEvent move(QEvent::MouseMove, place, grid.viewport()->mapToGlobal(place), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(grid.viewport(), &move);
    QCoreApplication::processEvents();
  });
  good &= measure(u"scroll, with its painting"_s, 33, 100, [&] {
    grid.setTopRow(++step * 79 % apps);
    grid.viewport()->repaint();
  });
  const long memory = mostMemory();
  std::printf("%-28s %7.1f MiB (at most 150)\n", "memory", static_cast<double>(memory) / 1024);
  return good && memory <= mostMemoryKiB ? 0 : 1;
}
