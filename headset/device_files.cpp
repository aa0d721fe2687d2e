#include "device_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <array>
#include <cerrno>
#include <memory>
#include <string_view>

namespace orvanta::headset {

namespace {

constexpr mode_t kFolderMode = 0775;

QByteArray parentOf(const QByteArray& path) {
  qsizetype end = path.size();
  while (end > 1 && path.at(end - 1) == '/') --end;
  const qsizetype slash = path.lastIndexOf('/', end - 1);
  return slash <= 0 ? QByteArrayLiteral("/") : path.left(slash);
}

QByteArray nameOf(const QByteArray& path) {
  qsizetype end = path.size();
  while (end > 1 && path.at(end - 1) == '/') --end;
  return path.mid(path.lastIndexOf('/', end - 1) + 1, end - path.lastIndexOf('/', end - 1) - 1);
}

bool isInside(const QByteArray& path, std::string_view folder) {
  const QByteArray prefix(folder.data(), static_cast<qsizetype>(folder.size()));
  return path == prefix || path.startsWith(prefix + '/');
}

}  // namespace

UniqueFd& UniqueFd::operator=(UniqueFd&& other) noexcept {
  if (this != &other) {
    reset();
    m_fd = other.release();
  }
  return *this;
}

int UniqueFd::release() {
  const int fd = m_fd;
  m_fd = -1;
  return fd;
}

void UniqueFd::reset() {
  if (m_fd >= 0) ::close(m_fd);
  m_fd = -1;
}

DeviceFiles::DeviceFiles(const QString& root)
    : m_rootPath(QFile::encodeName(QFileInfo(root).canonicalFilePath())),
      m_root(::open(m_rootPath.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {}

UniqueFd DeviceFiles::openIn(const QByteArray& path, int flags, mode_t mode) const {
  // The kernel resolves the path as if the headset's root were the root: "/sdcard" is a link with an absolute
  // target there, and ".." must not lead to the desktop's own files.
  open_how how{};
  how.flags = static_cast<quint64>(flags) | O_CLOEXEC;
  how.mode = mode;
  how.resolve = RESOLVE_IN_ROOT | RESOLVE_NO_MAGICLINKS;
  return UniqueFd(
      static_cast<int>(::syscall(SYS_openat2, m_root.get(), path.constData(), &how, sizeof(how))));
}

QByteArray DeviceFiles::canonical(const QByteArray& devicePath) const {
  const UniqueFd fd = openIn(devicePath, O_PATH);
  if (fd.isOpen()) {
    std::array<char, PATH_MAX> target{};
    const QByteArray link = "/proc/self/fd/" + QByteArray::number(fd.get());
    const ssize_t length = ::readlink(link.constData(), target.data(), target.size());
    const QByteArray full(target.data(), std::max<ssize_t>(length, 0));
    const QByteArray inside = full.mid(m_rootPath.size());
    return inside.isEmpty() ? QByteArrayLiteral("/") : inside;
  }
  const QByteArray parent = parentOf(devicePath);
  if (parent == devicePath || !devicePath.startsWith('/')) return devicePath;
  const QByteArray folder = canonical(parent);
  return (folder == "/" ? QByteArray() : folder) + '/' + nameOf(devicePath);
}

QString DeviceFiles::localPath(const QByteArray& devicePath) const {
  return QFile::decodeName(m_rootPath + canonical(devicePath));
}

int DeviceFiles::writeRefusal(const QByteArray& path) const {
  const QByteArray where = canonical(path);
  for (const char* open : {"/storage/emulated/0", "/data/local/tmp"}) {
    if (isInside(where, open)) return 0;
  }
  return isInside(where, "/data") || isInside(where, "/storage") ? EACCES : EROFS;
}

int DeviceFiles::stat(const QByteArray& path, bool followLinks, struct stat* result) const {
  if (canonical(path).startsWith("/data/data/")) return EACCES;
  const UniqueFd fd = openIn(path, O_PATH | (followLinks ? 0 : O_NOFOLLOW));
  if (!fd.isOpen() || ::fstat(fd.get(), result) != 0) return errno;
  return 0;
}

int DeviceFiles::list(const QByteArray& path, QList<Entry>* entries) const {
  const QByteArray where = canonical(path);
  for (const char* closed : {"/data", "/data/app", "/data/data", "/data/user"}) {
    if (where == closed) return EACCES;
  }
  UniqueFd fd = openIn(path, O_RDONLY | O_DIRECTORY);
  if (!fd.isOpen()) return errno;
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(::fdopendir(fd.get()), &::closedir);
  if (folder == nullptr) return errno;
  const int folderFd = fd.release();
  while (const dirent* entry = ::readdir(folder.get())) {
    Entry item;
    item.name = entry->d_name;
    if (::fstatat(folderFd, entry->d_name, &item.info, AT_SYMLINK_NOFOLLOW) == 0) entries->append(item);
  }
  return 0;
}

int DeviceFiles::openForReading(const QByteArray& path, UniqueFd* fd) const {
  *fd = openIn(path, O_RDONLY);
  return fd->isOpen() ? 0 : errno;
}

int DeviceFiles::makeFolders(const QByteArray& path) const {
  if (openIn(path, O_PATH | O_DIRECTORY).isOpen()) return 0;
  const QByteArray parent = parentOf(path);
  if (parent == path) return ENOENT;
  if (const int error = makeFolders(parent); error != 0) return error;
  const UniqueFd folder = openIn(parent, O_PATH | O_DIRECTORY);
  if (!folder.isOpen()) return errno;
  if (::mkdirat(folder.get(), nameOf(path).constData(), kFolderMode) != 0 && errno != EEXIST) return errno;
  return 0;
}

int DeviceFiles::create(const QByteArray& path, mode_t mode, UniqueFd* fd) const {
  if (const int refusal = writeRefusal(path); refusal != 0) return refusal;
  struct stat info {};
  if (!path.endsWith('/') && stat(path, false, &info) == 0 &&
      (S_ISREG(info.st_mode) || S_ISLNK(info.st_mode))) {
    remove(path);
  }
  for (int attempt = 0; attempt < 2; ++attempt) {
    *fd = openIn(path, O_WRONLY | O_CREAT | O_TRUNC, mode & 0777U);
    if (fd->isOpen()) return 0;
    if (errno != ENOENT) return errno;
    if (const int error = makeFolders(parentOf(path)); error != 0) return error;
  }
  return errno;
}

int DeviceFiles::createLink(const QByteArray& path, const QByteArray& target) const {
  if (const int refusal = writeRefusal(path); refusal != 0) return refusal;
  if (const int error = makeFolders(parentOf(path)); error != 0) return error;
  remove(path);
  const UniqueFd folder = openIn(parentOf(path), O_PATH | O_DIRECTORY);
  if (!folder.isOpen()) return errno;
  return ::symlinkat(target.constData(), folder.get(), nameOf(path).constData()) == 0 ? 0 : errno;
}

int DeviceFiles::remove(const QByteArray& path) const {
  const UniqueFd folder = openIn(parentOf(path), O_PATH | O_DIRECTORY);
  if (!folder.isOpen()) return errno;
  return ::unlinkat(folder.get(), nameOf(path).constData(), 0) == 0 ? 0 : errno;
}

qint64 DeviceFiles::bytesUsed() const {
  qint64 bytes = 0;
  for (const char* folder : {"/data/app", "/data/local/tmp", "/storage/emulated/0"}) {
    QDirIterator files(QFile::decodeName(m_rootPath + folder), QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
      files.next();
      bytes += files.fileInfo().size();
    }
  }
  return bytes;
}

}  // namespace orvanta::headset
