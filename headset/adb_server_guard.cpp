#include "adb_server_guard.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string_view>

namespace orvanta::headset {

namespace {

constexpr int kPatienceMs = 1000;

}  // namespace

void killAdbServer(quint16 port) {
  const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  constexpr std::string_view request = "0009host:kill";
  if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 &&
      ::send(fd, request.data(), request.size(), MSG_NOSIGNAL) > 0) {
    pollfd answer{fd, POLLIN, 0};
    ::poll(&answer, 1, kPatienceMs);
  }
  ::close(fd);
}

void guardAdbServer(quint16 port) {
  const int starter = static_cast<int>(::syscall(SYS_pidfd_open, ::getppid(), 0));
  if (starter < 0) return;
  const pid_t middle = ::fork();
  if (middle > 0) {
    ::waitpid(middle, nullptr, 0);
    ::close(starter);
    return;
  }
  if (middle < 0) return;
  // In its own session, reparented to init: signals to the group or to all children don't reach it.
  ::setsid();
  if (::fork() != 0) ::_exit(0);
  const int nothing = ::open("/dev/null", O_RDWR);
  for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(nothing, fd);
  pollfd gone{starter, POLLIN, 0};
  while (::poll(&gone, 1, -1) < 0) {
  }
  killAdbServer(port);
  ::_exit(0);
}

}  // namespace orvanta::headset
