#pragma once

#include <QByteArray>
#include <QString>
#include <memory>
#include <optional>

struct zip;

namespace orvanta {

/// The zip archive at `path`, open for reading as long as the object lives.
class PackageArchive {
 public:
  /// A missing or unreadable archive counts as one without entries.
  explicit PackageArchive(const QString& path);

  /// The content of the entry `name`. Folders in the name are separated by either kind of slash; without an
  /// exact match the case of letters is ignored. Nothing if there is no such entry, if it is encrypted or
  /// damaged, or if it inflates to more than `mostBytes`, whatever size it claims.
  std::optional<QByteArray> read(const QString& name, qsizetype mostBytes) const;

 private:
  struct Close {
    void operator()(zip* archive) const;
  };
  std::unique_ptr<zip, Close> m_archive;
};

}  // namespace orvanta
