#include "call_server.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QFile>
#include <array>
#include <cerrno>
#include <cstring>

namespace orvanta::headset {

namespace {

constexpr int kCallsAtOnce = 64;
constexpr quint32 kMaxRequest = 4 * 1024 * 1024;

/// The request's length and, with it, the three handles.
bool receiveHandles(int connection, quint32& size, std::array<int, 3>& handles) {
  iovec block{&size, sizeof(size)};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(handles))> control{};
  msghdr message{};
  message.msg_iov = &block;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  if (::recvmsg(connection, &message, MSG_CMSG_CLOEXEC) != static_cast<ssize_t>(sizeof(size))) return false;
  const cmsghdr* header = CMSG_FIRSTHDR(&message);
  if (header == nullptr || header->cmsg_type != SCM_RIGHTS || header->cmsg_len != CMSG_LEN(sizeof(handles))) {
    return false;
  }
  std::memcpy(handles.data(), CMSG_DATA(header), sizeof(handles));
  return size <= kMaxRequest;
}

void serve(UniqueFd connection, const CallServer::Handler& handler) {
  quint32 size = 0;
  std::array<int, 3> handles{-1, -1, -1};
  if (!receiveHandles(connection.get(), size, handles)) return;
  UniqueFd in(handles[0]);
  UniqueFd out(handles[1]);
  UniqueFd err(handles[2]);
  QByteArray request(size, '\0');
  qsizetype filled = 0;
  while (filled < request.size()) {
    const ssize_t got = ::read(connection.get(), request.data() + filled, request.size() - filled);
    if (got <= 0) return;
    filled += got;
  }
  QStringList words;
  const QByteArrayList raw = request.split('\0');
  for (const QByteArray& word : raw) words.append(QString::fromUtf8(word));
  if (words.size() < 2) return;
  words.removeLast();

  unsigned char code = 0;
  {
    Call call(words, std::move(in), std::move(out), std::move(err));
    code = static_cast<unsigned char>(handler(call));
  }
  [[maybe_unused]] const ssize_t done = ::write(connection.get(), &code, 1);
}

}  // namespace

Call::Call(QStringList words, UniqueFd in, UniqueFd out, UniqueFd err)
    : command(words.takeFirst()),
      arguments(std::move(words)),
      input(std::move(in)),
      m_output(std::move(out)),
      m_error(std::move(err)) {}

void Call::write(int fd, const QByteArray& text) {
  qsizetype written = 0;
  while (written < text.size()) {
    const ssize_t step = ::write(fd, text.constData() + written, text.size() - written);
    if (step < 0 && errno == EINTR) continue;
    if (step <= 0) return;
    written += step;
  }
}

CallServer::CallServer(Handler handler) : m_handler(std::move(handler)) {
  m_threads.setMaxThreadCount(kCallsAtOnce);
}

CallServer::~CallServer() {
  m_notifier.reset();
  m_socket.reset();
  m_threads.waitForDone();
}

bool CallServer::listen(const QString& folder) {
  // A local socket's name is limited to about 100 bytes, and a path under a temporary folder may be longer.
  // The folder's open handle gives a short one.
  const UniqueFd handle(::open(QFile::encodeName(folder).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!handle.isOpen()) return false;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const QByteArray path = "/proc/self/fd/" + QByteArray::number(handle.get()) + "/system";
  std::strncpy(address.sun_path, path.constData(), sizeof(address.sun_path) - 1);
  ::unlink(address.sun_path);
  m_socket = UniqueFd(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (::bind(m_socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) return false;
  if (::listen(m_socket.get(), SOMAXCONN) != 0) return false;
  m_notifier = std::make_unique<QSocketNotifier>(m_socket.get(), QSocketNotifier::Read);
  connect(m_notifier.get(), &QSocketNotifier::activated, this, &CallServer::acceptCall);
  return true;
}

void CallServer::acceptCall() {
  const int connection = ::accept4(m_socket.get(), nullptr, nullptr, SOCK_CLOEXEC);
  if (connection < 0) return;
  m_threads.start([connection, handler = m_handler] { serve(UniqueFd(connection), handler); });
}

}  // namespace orvanta::headset
