#include "ui/own_settings.h"

#include <windows.h>

#include <string>
#include <utility>

namespace orvanta {

namespace {

// The user's root last: the keys for both are made below it.
const std::pair<HKEY, const wchar_t*> roots[] = {{HKEY_CLASSES_ROOT, L"\\classes"},
                                                 {HKEY_CURRENT_USER, L"\\user"}};

std::wstring place() {
  return L"Software\\Orvanta tests\\" + std::to_wstring(::GetCurrentProcessId());
}

}  // namespace

OwnSettings::OwnSettings(const QString&) {
  for (const auto& [root, name] : roots) {
    HKEY key = nullptr;
    const LSTATUS made = ::RegCreateKeyExW(HKEY_CURRENT_USER, (place() + name).c_str(), 0, nullptr, 0,
                                           KEY_ALL_ACCESS, nullptr, &key, nullptr);
    if (made != ERROR_SUCCESS || ::RegOverridePredefKey(root, key) != ERROR_SUCCESS)
      qFatal("There is no key for the settings of the tests");
    ::RegCloseKey(key);
  }
}

OwnSettings::~OwnSettings() {
  for (const auto& [root, name] : roots) ::RegOverridePredefKey(root, nullptr);
  ::RegDeleteTreeW(HKEY_CURRENT_USER, place().c_str());
}

}  // namespace orvanta
