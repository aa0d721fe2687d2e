// Each reader of text from outside with eight times as much text: nothing may grow faster than the text does.
#include <QCoreApplication>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <limits>

#include "readers.h"

using namespace orvanta::fuzz;

namespace {

constexpr int growth = 8;
constexpr double limit = 4.0 * growth;  // a larger text leaves the processor's caches; squared would be 64
constexpr qsizetype smallSize = 512 * 1024;

/// Of three runs the fastest, in milliseconds of processor time.
double timeOf(const Reader& reader, const QByteArray& text) {
  std::clock_t best = std::numeric_limits<std::clock_t>::max();
  for (int i = 0; i < 3; ++i) {
    const std::clock_t begin = std::clock();
    reader.read(text);
    best = std::min(best, std::clock() - begin);
  }
  return static_cast<double>(best) * 1000 / CLOCKS_PER_SEC;
}

/// `size` bytes, over and over the same.
QByteArray filled(const QByteArray& piece, qsizetype size) {
  return piece.repeated(size / piece.size() + 1).first(size);
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  bool good = true;
  for (const Reader& reader : readers()) {
    // The reader's own text again and again; one endless line of it; and what text of this kind is full of.
    QByteArray oneLine = reader.seed;
    oneLine.replace("\r\n", " ");
    double worst = 0;
    double longest = 0;
    for (const QByteArray& piece :
         {reader.seed, oneLine, QByteArray("\r\n"), QByteArray("\r"), QByteArray("'"), QByteArray(" "),
          QByteArray("\\\""), QByteArray("["), QByteArray("/"), QByteArray("{\"a\":["), QByteArray("error: "),
          QByteArray("\xe4\xb8\xad")}) {
      const double small = timeOf(reader, filled(piece, smallSize));
      const double large = timeOf(reader, filled(piece, growth * smallSize));
      longest = std::max(longest, large);
      // Less than a millisecond tells nothing.
      if (large > 1) worst = std::max(worst, large / small);
    }
    good = good && worst <= limit;
    std::printf("%-14s %d times the text: %5.1f times the time (at most %.0f), %.1f ms for 4 MiB%s\n",
                reader.name, growth, worst, limit, longest, worst <= limit ? "" : "  TOO SLOW");
  }
  return good ? 0 : 1;
}
