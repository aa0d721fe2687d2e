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

void beginSync(const QFileDevice& file, qint64 from, qint64 bytes) {
  ::sync_file_range(file.handle(), from, bytes, SYNC_FILE_RANGE_WRITE);
}

}  // namespace orvanta
