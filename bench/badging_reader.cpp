// The badging reader on 10 MiB against 1 MiB: the time must grow linearly.
#include "apk/badging.h"
#include "ratio_report.h"

using namespace Qt::StringLiterals;

namespace {

QString badging(qsizetype size) {
  QString text = u"package: name='com.example.app' versionCode='12' versionName='1.2'\r\n"_s;
  for (int i = 0; text.size() < size; ++i) {
    text +=
        u"uses-permission: name='android.permission.P%1'\r\napplication-label-zh-CN:'应用 %1'\r\n"_s.arg(i);
  }
  return text;
}

template <int mebibytes>
void read(benchmark::State& state) {
  const QString text = badging(qsizetype(mebibytes) * 1024 * 1024);
  for (auto _ : state) {
    std::array<QString, 51> fields;
    int count = 0;
    orvanta::readBadging(text, fields, count);
    benchmark::DoNotOptimize(count);
  }
}

}  // namespace

int main(int argc, char** argv) {
  orvanta::bench::RatioReporter reporter;
  orvanta::bench::compared("10 MiB", read<10>, 9);
  orvanta::bench::compared("1 MiB", read<1>, 9);
  orvanta::bench::runAll(argc, argv, reporter);
  return reporter.compare("10 MiB", "1 MiB", 12) ? 0 : 1;
}
