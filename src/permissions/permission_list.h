#pragma once

#include <QString>
#include <array>

namespace orvanta {

/// The permissions among `ManifestFields`, each followed by a carriage return. `permissionCount` is the
/// number that the package declares; those beyond the last field are left out.
QString permissionList(const std::array<QString, 51>& ManifestFields, int permissionCount);

}  // namespace orvanta
