// Plays adb.exe under Wine with the real adb of the machine that Wine runs on: hands the words of its command
// line to relay-server on the loopback and prints what comes back, with the line ends of Windows. So the
// program for Windows meets the virtual headset.
#include <winsock2.h>

#include <windows.h>

#include <shellapi.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

std::string utf8(const wchar_t* text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<size_t>(size), '\0');  // its NUL at the end parts the words
  WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), size, nullptr, nullptr);
  return bytes;
}

/// The tool's name and the words behind it, each with a NUL at its end.
std::string words() {
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  wchar_t self[MAX_PATH];
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  std::string all = utf8(std::filesystem::path(self).stem().wstring().c_str());
  for (int i = 1; i < count; ++i) all += utf8(arguments[i]);
  LocalFree(arguments);
  return all;
}

void say(const std::string& text) {
  DWORD written = 0;
  WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

int refuse(const char* step) {
  say("relay: " + std::string(step) + " failed, " + std::to_string(WSAGetLastError()) + "\r\n");
  return 1;
}

}  // namespace

int main() {
  const char* const port = std::getenv("ORVANTA_RELAY_PORT");
  WSADATA data;
  if (!port || WSAStartup(MAKEWORD(2, 2), &data) != 0) return refuse("start");
  const SOCKET server = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<u_short>(std::atoi(port)));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (connect(server, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) return refuse("connect");
  const std::string request = words();
  if (send(server, request.data(), static_cast<int>(request.size()), 0) < 0) return refuse("send");
  shutdown(server, SD_SEND);
  char bytes[4096];
  for (;;) {
    const int count = recv(server, bytes, sizeof(bytes), 0);
    if (count <= 0) return 0;
    std::string text;
    for (int i = 0; i < count; ++i) {
      if (bytes[i] == '\n') text += '\r';
      text += bytes[i];
    }
    say(text);
  }
}
