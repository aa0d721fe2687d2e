#include "platform/posix/socket_queues.h"

#include <arpa/inet.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QDirIterator>
#include <array>
#include <cstring>
#include <optional>

#include "platform/posix/descriptor.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

struct Endpoint {
  std::array<__be32, 4> address = {};
  __be16 port = 0;
};

/// A connection as seen from one of its ends.
struct TcpConnection {
  quint8 family = 0;
  Endpoint here;
  Endpoint there;
};

Endpoint endpointIn(const sockaddr_storage& name) {
  Endpoint endpoint;
  if (name.ss_family == AF_INET) {
    sockaddr_in v4{};
    std::memcpy(&v4, &name, sizeof(v4));
    endpoint.address[0] = v4.sin_addr.s_addr;
    endpoint.port = v4.sin_port;
  } else {
    sockaddr_in6 v6{};
    std::memcpy(&v6, &name, sizeof(v6));
    std::memcpy(endpoint.address.data(), &v6.sin6_addr, sizeof(v6.sin6_addr));
    endpoint.port = v6.sin6_port;
  }
  return endpoint;
}

std::optional<TcpConnection> connectionOf(const Descriptor& socket) {
  sockaddr_storage here{};
  sockaddr_storage there{};
  socklen_t hereSize = sizeof(here);
  socklen_t thereSize = sizeof(there);
  if (::getsockname(socket.get(), reinterpret_cast<sockaddr*>(&here), &hereSize) != 0 ||
      ::getpeername(socket.get(), reinterpret_cast<sockaddr*>(&there), &thereSize) != 0)
    return std::nullopt;
  if (here.ss_family != AF_INET && here.ss_family != AF_INET6) return std::nullopt;
  return TcpConnection{static_cast<quint8>(here.ss_family), endpointIn(here), endpointIn(there)};
}

/// The kernel's table of connections.
class ConnectionTable {
 public:
  ConnectionTable() : m_netlink(::socket(AF_NETLINK, SOCK_DGRAM | SOCK_CLOEXEC, NETLINK_SOCK_DIAG)) {}

  struct Queues {
    qint64 unread = 0;
    qint64 unsent = 0;
  };

  /// Zeros for a connection that is not on this computer.
  Queues queuesOf(const TcpConnection& connection) const {
    struct {
      nlmsghdr header{};
      inet_diag_req_v2 question{};
    } request;
    request.header.nlmsg_len = sizeof(request);
    request.header.nlmsg_type = SOCK_DIAG_BY_FAMILY;
    request.header.nlmsg_flags = NLM_F_REQUEST;
    request.question.sdiag_family = connection.family;
    request.question.sdiag_protocol = IPPROTO_TCP;
    request.question.idiag_states = ~0U;
    inet_diag_sockid& id = request.question.id;
    id.idiag_sport = connection.here.port;
    id.idiag_dport = connection.there.port;
    std::memcpy(id.idiag_src, connection.here.address.data(), sizeof(id.idiag_src));
    std::memcpy(id.idiag_dst, connection.there.address.data(), sizeof(id.idiag_dst));
    id.idiag_cookie[0] = id.idiag_cookie[1] = INET_DIAG_NOCOOKIE;
    if (::send(m_netlink.get(), &request, sizeof(request), 0) < 0) return {};

    // The kernel has answered by the time that send() returns.
    alignas(nlmsghdr) std::array<char, 1024> reply;
    const ssize_t size = ::recv(m_netlink.get(), reply.data(), reply.size(), MSG_DONTWAIT);
    nlmsghdr header{};
    inet_diag_msg answer{};
    if (size < static_cast<ssize_t>(NLMSG_LENGTH(sizeof(answer)))) return {};
    std::memcpy(&header, reply.data(), sizeof(header));
    if (header.nlmsg_type != SOCK_DIAG_BY_FAMILY) return {};
    std::memcpy(&answer, reply.data() + NLMSG_HDRLEN, sizeof(answer));
    return {answer.idiag_rqueue, answer.idiag_wqueue};
  }

 private:
  Descriptor m_netlink;
};

}  // namespace

qint64 bytesOnTheWay(pid_t process) {
  const Descriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
  if (!handle.isOpen()) return 0;
  const ConnectionTable table;
  qint64 bytes = 0;
  QDirIterator files(u"/proc/%1/fd"_s.arg(process), QDir::Files | QDir::System);
  while (files.hasNext()) {
    files.next();
    const Descriptor socket(
        static_cast<int>(::syscall(SYS_pidfd_getfd, handle.get(), files.fileName().toInt(), 0)));
    const auto connection = socket.isOpen() ? connectionOf(socket) : std::nullopt;
    if (!connection) continue;
    bytes += table.queuesOf(*connection).unsent;
    bytes += table.queuesOf({connection->family, connection->there, connection->here}).unread;
  }
  return bytes;
}

}  // namespace orvanta
