#include "apk/package_archive.h"

#include <zip.h>

#include <QFileInfo>
#include <array>
#include <memory>

namespace orvanta {

namespace {

struct CloseEntry {
  void operator()(zip_file_t* entry) const { zip_fclose(entry); }
};

std::optional<zip_uint64_t> find(zip_t* archive, const QString& name) {
  const QByteArray stored = QString(name).replace(u'\\', u'/').toUtf8();
  zip_int64_t index = zip_name_locate(archive, stored.constData(), ZIP_FL_ENC_GUESS);
  if (index < 0) index = zip_name_locate(archive, stored.constData(), ZIP_FL_ENC_GUESS | ZIP_FL_NOCASE);
  if (index < 0) return std::nullopt;
  return static_cast<zip_uint64_t>(index);
}

}  // namespace

PackageArchive::PackageArchive(const QString& path) {
  // Opening anything but a file, such as a pipe, could block for ever.
  if (QFileInfo(path).isFile()) m_archive.reset(zip_open(path.toUtf8().constData(), ZIP_RDONLY, nullptr));
}

void PackageArchive::Close::operator()(zip* archive) const {
  zip_discard(archive);
}

std::optional<QByteArray> PackageArchive::read(const QString& name, qsizetype mostBytes) const {
  if (!m_archive) return std::nullopt;
  const auto index = find(m_archive.get(), name);
  if (!index) return std::nullopt;
  const std::unique_ptr<zip_file_t, CloseEntry> entry(zip_fopen_index(m_archive.get(), *index, 0));
  if (!entry) return std::nullopt;

  QByteArray content;
  std::array<char, 65536> piece;
  // Reads past the end: only there does libzip report a wrong checksum.
  for (;;) {
    const zip_int64_t count = zip_fread(entry.get(), piece.data(), piece.size());
    if (count < 0) return std::nullopt;
    if (count == 0) return content;
    content.append(piece.data(), static_cast<qsizetype>(count));
    if (content.size() > mostBytes) return std::nullopt;
  }
}

}  // namespace orvanta
