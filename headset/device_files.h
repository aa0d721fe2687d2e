#pragma once

#include <sys/stat.h>

#include <QByteArray>
#include <QList>
#include <QString>
#include <optional>

namespace orvanta::headset {

/// A file descriptor that closes itself.
class UniqueFd {
 public:
  explicit UniqueFd(int fd = -1) : m_fd(fd) {}
  UniqueFd(UniqueFd&& other) noexcept : m_fd(other.release()) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept;
  UniqueFd(const UniqueFd&) = delete;
  UniqueFd& operator=(const UniqueFd&) = delete;
  ~UniqueFd() { reset(); }
  int get() const { return m_fd; }
  bool isOpen() const { return m_fd >= 0; }
  int release();
  void reset();

 private:
  int m_fd;
};

/// The headset's files as its shell user sees them: paths start at the headset's own root, links and ".."
/// never lead out of it, and places that the shell user may not write or list answer as real ones do.
/// Functions return 0 or an errno value unless they say otherwise.
class DeviceFiles {
 public:
  explicit DeviceFiles(const QString& root);

  bool isValid() const { return m_root.isOpen(); }

  /// The local path of a device path, links of the headset resolved; it need not exist.
  QString localPath(const QByteArray& devicePath) const;
  /// The device path with every link on the way resolved.
  QByteArray canonical(const QByteArray& devicePath) const;

  int stat(const QByteArray& path, bool followLinks, struct stat* result) const;
  struct Entry {
    QByteArray name;
    struct stat info;
  };
  /// Nothing for a folder that the shell user may not list.
  int list(const QByteArray& path, QList<Entry>* entries) const;
  int openForReading(const QByteArray& path, UniqueFd* fd) const;
  /// Creates the parent folders; replaces a file or link of that name.
  int create(const QByteArray& path, mode_t mode, UniqueFd* fd) const;
  int createLink(const QByteArray& path, const QByteArray& target) const;
  int remove(const QByteArray& path) const;

  /// Bytes in all files of the headset, by their sizes.
  qint64 bytesUsed() const;

 private:
  UniqueFd openIn(const QByteArray& path, int flags, mode_t mode = 0) const;
  int makeFolders(const QByteArray& path) const;
  int writeRefusal(const QByteArray& path) const;

  QByteArray m_rootPath;
  UniqueFd m_root;
};

}  // namespace orvanta::headset
