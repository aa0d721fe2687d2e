#include "platform/shell_verb.h"

#include <windows.h>

#include <optional>

namespace orvanta {

namespace {

std::optional<HKEY> rootKey(const QString& abbreviation) {
  if (abbreviation == u"HKCR") return HKEY_CLASSES_ROOT;
  if (abbreviation == u"HKCU") return HKEY_CURRENT_USER;
  if (abbreviation == u"HKLM") return HKEY_LOCAL_MACHINE;
  return std::nullopt;
}

std::optional<DWORD> valueType(const QString& Typ) {
  if (Typ.isEmpty() || Typ == u"REG_SZ") return REG_SZ;
  if (Typ == u"REG_EXPAND_SZ") return REG_EXPAND_SZ;
  return std::nullopt;
}

const wchar_t* wide(const QString& text) {
  return reinterpret_cast<const wchar_t*>(text.utf16());
}

}  // namespace

ShellVerbHome nativeShellVerbHome() {
  return ShellVerbHome::Registry;
}

bool RegWrite(const QString& Path, const QString& Value, const QString& Typ) {
  const RegistryPlace place = registryPlace(Path);
  const auto root = rootKey(place.root);
  const auto type = valueType(Typ);
  if (!root || !type) return false;
  HKEY key = nullptr;
  if (::RegCreateKeyExW(*root, wide(place.key), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr,
                        &key, nullptr) != ERROR_SUCCESS) {
    return false;
  }
  const auto bytes = static_cast<DWORD>((Value.size() + 1) * static_cast<qsizetype>(sizeof(wchar_t)));
  const LSTATUS result = ::RegSetValueExW(key, wide(place.valueName), 0, *type,
                                          reinterpret_cast<const BYTE*>(Value.utf16()), bytes);
  ::RegCloseKey(key);
  return result == ERROR_SUCCESS;
}

}  // namespace orvanta
