#include "permissions/permission_list.h"

namespace orvanta {

QString permissionList(const std::array<QString, 51>& ManifestFields, int permissionCount) {
  constexpr size_t fieldBeforeFirst = 10;
  QString list;
  for (int n = 1; n <= permissionCount; ++n) {
    const size_t field = fieldBeforeFirst + static_cast<size_t>(n);
    if (field >= ManifestFields.size()) break;
    list += ManifestFields[field] + u'\r';
  }
  return list;
}

}  // namespace orvanta
