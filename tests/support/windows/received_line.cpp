#include "support/received_line.h"

#include <windows.h>

std::string receivedLine(int, const char* const*) {
  const wchar_t* const received = ::GetCommandLineW();
  const int size = ::WideCharToMultiByte(CP_UTF8, 0, received, -1, nullptr, 0, nullptr, nullptr);
  std::string line(static_cast<size_t>(size), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, received, -1, line.data(), size, nullptr, nullptr);
  line.pop_back();  // the end that the system counts in
  return line;
}
