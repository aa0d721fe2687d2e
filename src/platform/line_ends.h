#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace orvanta {

/// Presents every line end of a stream of bytes as one CR LF, whatever the tool wrote: LF, CR LF, or CR CR LF
/// as some versions do on Windows. A run of CRs before an LF is one line end, also across reads; a CR with no
/// LF behind it, as in a progress display, stays.
class LineEndNormalizer {
 public:
  /// Appends the next bytes of the stream to `output`, but for CRs at their end, which wait for what follows.
  void feed(QByteArrayView bytes, QByteArray& output);
  /// Appends the CRs that still wait: the stream has ended.
  void flush(QByteArray& output);

 private:
  qsizetype m_waitingReturns = 0;
};

}  // namespace orvanta
