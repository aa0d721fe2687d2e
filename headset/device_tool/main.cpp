// The shell commands that the headset's system services answer: pm, dumpsys, df and so on. Each is a link to
// this program, which passes its arguments and standard handles to the headset and waits for the exit code.
// It is static because the headset's file tree has no libraries.

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "list_files.h"

namespace {

constexpr const char* kSocket = "/dev/socket/system";
constexpr int kCannotConnect = 20;

bool sendRequest(int connection, const std::string& request) {
  const auto size = static_cast<std::uint32_t>(request.size());
  iovec block{const_cast<std::uint32_t*>(&size), sizeof(size)};
  const std::array<int, 3> handles = {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(handles))> control{};
  msghdr message{};
  message.msg_iov = &block;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  cmsghdr* header = CMSG_FIRSTHDR(&message);
  header->cmsg_level = SOL_SOCKET;
  header->cmsg_type = SCM_RIGHTS;
  header->cmsg_len = CMSG_LEN(sizeof(handles));
  std::memcpy(CMSG_DATA(header), handles.data(), sizeof(handles));
  if (::sendmsg(connection, &message, 0) != static_cast<ssize_t>(sizeof(size))) return false;
  std::size_t sent = 0;
  while (sent < request.size()) {
    const ssize_t step = ::write(connection, request.data() + sent, request.size() - sent);
    if (step <= 0) return false;
    sent += static_cast<std::size_t>(step);
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const char* slash = std::strrchr(argv[0], '/');
  const std::string name = slash != nullptr ? slash + 1 : argv[0];
  if (name == "ls") return orvanta::headset::listFiles(argc, argv);

  std::string request = name + '\0';
  for (int i = 1; i < argc; ++i) request += std::string(argv[i]) + '\0';
  const int connection = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, kSocket);
  unsigned char code = 0;
  if (connection < 0 || ::connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
      !sendRequest(connection, request) || ::read(connection, &code, 1) != 1) {
    std::fprintf(stderr, "cmd: Can't find service: %s\n", name.c_str());
    return kCannotConnect;
  }
  return code;
}
