#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace orvanta {

/// The content of the entry `name` in the zip archive at `path`. Either kind of slash stands between the
/// folders of the name; where none is written just so, one that differs only in the case of its letters is
/// taken. Nothing comes back when there is no such archive or entry, when the entry is encrypted or damaged,
/// or when it really inflates to more than `mostBytes`, whatever size it claims.
std::optional<QByteArray> readArchiveEntry(const QString& path, const QString& name, qsizetype mostBytes);

}  // namespace orvanta
