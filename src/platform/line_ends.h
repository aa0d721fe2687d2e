#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace orvanta {

/// Presents every line end of a stream of bytes as one CR LF, whatever the tool wrote: LF, CR LF, or CR CR LF
/// as some versions do on Windows. A run of CRs before an LF is one line end, also across reads; a CR that no
/// LF follows, as in a progress display, stays.
class LineEndNormalizer {
 public:
  /// Appends the next bytes of the stream to `output`, except CRs at their end, which wait for what follows.
  void feed(QByteArrayView bytes, QByteArray& output);
  /// Appends the CRs that still wait, at the end of the stream.
  void flush(QByteArray& output);

 private:
  qsizetype m_waitingReturns = 0;
};

}  // namespace orvanta
