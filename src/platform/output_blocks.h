#pragma once

#include <QByteArrayView>

#include "platform/child_process.h"
#include "platform/line_ends.h"

namespace orvanta {

/// What the child processes of all systems share: line ends, the cut into blocks, and the order and number of
/// the signals, whatever a slot does meanwhile.
class OutputBlocks : public ChildProcess {
 protected:
  /// Emits the blocks that the next bytes of the pipe complete. False when the caller must stop reading: a
  /// slot has deleted this object, or one that runs an event loop is still handling an earlier block.
  bool receive(QByteArrayView bytes);
  /// Closes the pipe, then emits the rest and `finished`. A slot may have deleted this object on return.
  void endOfPipe();
  /// Ends the run a moment after kill(), in case a process out of reach still holds the pipe.
  void endSoon();

  /// Releases the pipe and the process, which may still run. Called once, at the end of the run.
  virtual void release() = 0;

 private:
  bool emitBlocks();

  LineEndNormalizer m_lineEnds;
  QByteArray m_waiting;
  qsizetype m_emitted = 0;  // of m_waiting
  bool m_emitting = false;
  bool m_ended = false;
  bool m_finishing = false;
};

}  // namespace orvanta
