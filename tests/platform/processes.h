#pragma once

#include <QByteArray>

/// What the tests of the runner ask the operating system.
namespace orvanta {

/// Whether the process with that number runs; one that has ended and waits for its parent does not.
bool runs(const QByteArray& process);

void end(const QByteArray& process);

/// Neither a running child nor one whose end nobody has taken note of.
bool noChildren();

/// Open files, pipes, processes and the like of this program.
qsizetype openHandles();

/// Whether a child can get out of reach of the one who ends its parent with all its children.
extern const bool childrenCanLeave;

/// The numbers of the errors with which a start fails.
struct StartErrors {
  quint32 missing;
  quint32 noProgram;
  quint32 withNul;
};
extern const StartErrors startErrors;

}  // namespace orvanta
