#pragma once

#include <QMap>
#include <QString>
#include <optional>

namespace orvanta {

/// The regular files of the first folder in a reply to `ls -Ral`, with their sizes in bytes. The layouts of
/// toybox, and of the older tool, which counts no links:
///     /sdcard/Android/obb/com.example.game:
///     total 8
///     -rw-rw---- 1 root sdcard_rw 5 2021-01-01 00:00 main.1.obb
///     -rw-rw---- root     sdcard_rw        5 2021-01-01 00:00 main.1.obb
class ListedFiles {
 public:
  explicit ListedFiles(const QString& listing);

  bool isEmpty() const { return m_sizes.isEmpty(); }
  /// The size of the file `name`; case does not matter, as it does not on the headset's shared storage.
  std::optional<qint64> sizeOf(const QString& name) const;

 private:
  QMap<QString, qint64> m_sizes;  // by the folded name
};

}  // namespace orvanta
