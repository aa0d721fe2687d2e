#pragma once

#include <QString>
#include <array>

/// The file manager's entry on a system with a registry, as values.
namespace orvanta {

/// One call of RegWrite.
struct RegistryWrite {
  QString Path;
  QString Value;
  QString Typ;

  bool operator==(const RegistryWrite&) const = default;
};

/// The program's own path: its folder, a backslash unless the folder's text already ends in one (a drive's
/// root does), its file name without extension, ".exe".
QString executablePath(const QString& applicationFolder, const QString& name);

/// The three writes of the shell verb, in their order: what it starts, which files it is offered for, its
/// picture. The %1 has no quotes: the program takes everything after its own name as the path.
std::array<RegistryWrite, 3> shellVerbWrites(const QString& executable);

}  // namespace orvanta
