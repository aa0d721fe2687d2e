#pragma once

#include <QString>

namespace orvanta {

/// Where the file managers of a system look for the actions they offer on a file.
enum class ShellVerbHome { Registry, DesktopEntries };

/// The one of the system that the program was built for.
ShellVerbHome nativeShellVerbHome();

/// A place in the registry: the root's abbreviation, the key below it, and the name of a value; the key's
/// default value has the empty name.
struct RegistryPlace {
  QString root;
  QString key;
  QString valueName;

  bool operator==(const RegistryPlace&) const = default;
};

/// The place that `Path` means: a path that ends in a backslash is a key, whose default value is meant; else
/// its last part is a value's name.
RegistryPlace registryPlace(const QString& Path);

/// Writes the text `Value` at `Path`, which begins with the abbreviation of a root ("HKCR\..."), as a value
/// of the type `Typ` ("REG_SZ" or "REG_EXPAND_SZ"; empty means the first); keys are made where missing. False
/// when the registry refused it, and always on a system that has none.
bool RegWrite(const QString& Path, const QString& Value, const QString& Typ = {});

}  // namespace orvanta
