#pragma once

#include <QString>
#include <array>
#include <optional>

namespace orvanta {

/// In bytes. No headset has room for a larger file: a size above is a broken reply.
inline constexpr qint64 largestFile = qint64(1) << 40;

/// The path in the reply to `echo $EXTERNAL_STORAGE`: all of it without its line end of two characters. Empty
/// for a shorter reply.
QString externalStorageIn(const QString& reply);

/// The digits 0 to 9 of `text`, in order.
QString KeepDigits(const QString& text);

/// The first four figures of `df -h`: from index 1, size, used, available and percentage; empty where
/// missing. A figure is a word after a blank with a digit among its first three characters; its unit is
/// dropped:
///     Filesystem      Size  Used Avail Use% Mounted on
///     /dev/fuse       109G   12G   97G  12% /storage/emulated
std::array<QString, 5> storageFiguresIn(const QString& output);

/// Size minus used, in whole numbers; nothing if either is not a number.
std::optional<qint64> freeSpace(const QString& size, const QString& used);

/// A figure of `df` in bytes. It is rounded: the true size is within `uncertainty` bytes of it.
struct StorageFigure {
  qint64 bytes = 0;
  qint64 uncertainty = 0;
};

/// One row of `df`.
struct StorageRoom {
  StorageFigure size;
  StorageFigure used;
  StorageFigure available;
};

/// The one row in the reply to `df -h PATH` or `df -k PATH`, read by its columns and units. Nothing if there
/// is no row or more than one. The layouts are those of toybox, of the older tool, and of busybox, where a
/// long name has a line to itself:
///     Filesystem      Size  Used Avail Use% Mounted on
///     /dev/fuse       109G  9.8G   99G  10% /storage/emulated
///     Filesystem             Size   Used   Free   Blksize
///     /mnt/sdcard             27G    19G     8G   4096
std::optional<StorageRoom> storageRoomIn(const QString& output);

/// `bytes` for a user to read, with at most three figures: "9.8 GiB", "912 MiB".
QString readableSize(qint64 bytes);

}  // namespace orvanta
