#include "platform/processes.h"

#include <signal.h>
#include <sys/wait.h>

#include <QDir>
#include <QFile>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace orvanta {

const bool childrenCanLeave = true;
const StartErrors startErrors = {ENOENT, EACCES, EINVAL};

bool runs(const QByteArray& process) {
  QFile stat(u"/proc/%1/stat"_s.arg(process.trimmed().toInt()));
  if (!stat.open(QIODevice::ReadOnly)) return false;
  const QByteArray text = stat.readAll();
  return text.mid(text.lastIndexOf(')') + 2, 1) != "Z";
}

void end(const QByteArray& process) {
  ::kill(process.trimmed().toInt(), SIGKILL);
}

bool noChildren() {
  siginfo_t info = {};
  return ::waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) < 0 && errno == ECHILD;
}

qsizetype openHandles() {
  return QDir(u"/proc/self/fd"_s).count();
}

}  // namespace orvanta
