#pragma once

#include <QString>
#include <array>
#include <optional>

#include "core/tools.h"

namespace orvanta {

/// `"<adb>" shell echo $EXTERNAL_STORAGE`
QString storageQueryLine(const Host& host);

/// `"<adb>" shell df -h <path>`
QString diskFreeLine(const Host& host, const QString& path);

/// The characters of `text` that are digits 0 to 9, in their order.
QString KeepDigits(const QString& text);

/// The first four figures of `df -h`: from index 1, size, used, available and percentage; empty where there
/// was none. A figure is a word with a blank in front and a digit within its first three characters; its unit
/// is dropped:
///     Filesystem      Size  Used Avail Use% Mounted on
///     /dev/fuse       109G   12G   97G  12% /storage/emulated
std::array<QString, 5> storageFiguresIn(const QString& output);

/// Size less used, in whole numbers; nothing when either is no number.
std::optional<qint64> freeSpace(const QString& size, const QString& used);

}  // namespace orvanta
