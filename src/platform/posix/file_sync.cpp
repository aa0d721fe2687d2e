#include "platform/file_sync.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFile>

#include "platform/posix/descriptor.h"

namespace orvanta {

bool syncToDisk(const QString& path) {
  const Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
  // The whole file system at once: a copy can have very many files, and their names count too.
  return file.isOpen() && ::syncfs(file.get()) == 0;
}

}  // namespace orvanta
