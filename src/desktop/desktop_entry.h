#pragma once

#include <QString>

/// The file manager's entry on a system with desktop entries, as text.
namespace orvanta {

/// By this name the desktop knows the program: its entry, its pictures, its windows.
inline const QString desktopId = QStringLiteral("example.orvanta.Orvanta");

/// `program` as the value of an `Exec` key that hands over one file: a quoted argument in an escaped string,
/// with a per cent sign doubled.
QString execValue(const QString& program);

/// The whole text of the entry that opens Android packages with `program`.
QString desktopEntry(const QString& program);

}  // namespace orvanta
