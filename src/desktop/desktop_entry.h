#pragma once

#include <QString>

/// The file manager's entry on a system with desktop entries, as text.
namespace orvanta {

/// The name by which the desktop knows the program's entry, icons and windows.
inline const QString desktopId = QStringLiteral("example.orvanta.Orvanta");

/// `program` as the value of an `Exec` key that hands over one file: a quoted argument in an escaped string,
/// with a per cent sign doubled.
QString execValue(const QString& program);

/// The whole text of the entry that opens Android packages with `program`.
QString desktopEntry(const QString& program);

}  // namespace orvanta
