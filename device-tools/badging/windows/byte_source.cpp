#include "byte_source.h"

#include <windows.h>

#include <algorithm>
#include <string>
#include <utility>

namespace orvanta::badging {

namespace {

/// The path as the system takes it. A long one gets the form without a length limit, in which the system
/// resolves nothing.
std::wstring systemPath(const char* path) {
  std::wstring wide(static_cast<size_t>(std::max(0, MultiByteToWideChar(CP_UTF8, 0, path, -1, nullptr, 0))),
                    0);
  MultiByteToWideChar(CP_UTF8, 0, path, -1, wide.data(), static_cast<int>(wide.size()));
  std::wstring whole(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), 0);
  whole.resize(GetFullPathNameW(wide.c_str(), static_cast<DWORD>(whole.size()), whole.data(), nullptr));
  if (whole.size() < MAX_PATH || whole.starts_with(L"\\\\?\\")) return whole;
  return whole.starts_with(L"\\\\") ? L"\\\\?\\UNC" + whole.substr(1) : L"\\\\?\\" + whole;
}

HANDLE handle(intptr_t file) {
  return reinterpret_cast<HANDLE>(file);
}

}  // namespace

Blob::Blob(size_t size) : m_own(new uint8_t[size]), m_bytes(m_own.get(), size) {}

Blob::~Blob() = default;

void Blob::swap(Blob& other) noexcept {
  std::swap(m_own, other.m_own);
  std::swap(m_base, other.m_base);
  std::swap(m_length, other.m_length);
  std::swap(m_bytes, other.m_bytes);
}

FileSource::~FileSource() {
  if (m_file != -1) CloseHandle(handle(m_file));
}

bool FileSource::open(const char* path) {
  m_file = reinterpret_cast<intptr_t>(CreateFileW(systemPath(path).c_str(), GENERIC_READ,
                                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  LARGE_INTEGER size = {};
  if (m_file == -1 || !GetFileSizeEx(handle(m_file), &size)) return false;
  m_size = static_cast<uint64_t>(size.QuadPart);
  return true;
}

bool FileSource::read(uint64_t offset, uint8_t* to, size_t length) const {
  if (offset > m_size || length > m_size - offset) return false;
  constexpr size_t largest = 1 << 30;
  while (length > 0) {
    OVERLAPPED place = {};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    DWORD count = 0;
    if (!ReadFile(handle(m_file), to, static_cast<DWORD>(std::min(length, largest)), &count, &place) ||
        count == 0)
      return false;
    to += count;
    length -= count;
    offset += count;
  }
  return true;
}

Blob FileSource::map(uint64_t offset, size_t length) const {
  // A mapping would keep others from shortening the file.
  if (length == 0 || offset > m_size || length > m_size - offset) return {};
  Blob copy(length);
  if (!read(offset, copy.room(), length)) return {};
  return copy;
}

PathKind kindOf(const char* path) {
  const DWORD attributes = GetFileAttributesW(systemPath(path).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return PathKind::Nothing;
  return attributes & FILE_ATTRIBUTE_DIRECTORY ? PathKind::Folder : PathKind::File;
}

void endIfFileShrinks(const char*) {}  // nothing is mapped

}  // namespace orvanta::badging
