#include "platform/line_ends.h"

#include <cstring>
#include <utility>

namespace orvanta {

void LineEndNormalizer::feed(QByteArrayView bytes, QByteArray& output) {
  const char* at = bytes.begin();
  const char* const end = bytes.end();
  while (at != end) {
    const auto* const lineFeed =
        static_cast<const char*>(std::memchr(at, '\n', static_cast<size_t>(end - at)));
    const char* const stop = lineFeed ? lineFeed : end;
    const char* textEnd = stop;
    while (textEnd != at && textEnd[-1] == '\r') --textEnd;
    if (textEnd != at) {
      flush(output);
      output.append(at, textEnd - at);
    }
    m_waitingReturns += stop - textEnd;
    if (!lineFeed) return;
    output.append("\r\n", 2);
    m_waitingReturns = 0;
    at = lineFeed + 1;
  }
}

void LineEndNormalizer::flush(QByteArray& output) {
  output.append(std::exchange(m_waitingReturns, 0), '\r');
}

}  // namespace orvanta
