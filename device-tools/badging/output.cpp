#include "output.h"

#include <errno.h>
#include <unistd.h>

#include <charconv>

namespace orvanta::badging {

namespace {
constexpr size_t kEnough = 16 * 1024;
}

Output& Output::operator<<(std::string_view text) {
  text = text.substr(0, m_left);
  m_left -= text.size();
  m_text += text;
  if (m_descriptor >= 0 && m_text.size() >= kEnough) flush();
  return *this;
}

Output& Output::operator<<(int32_t number) {
  char digits[12];
  const auto end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
  return *this << std::string_view(digits, static_cast<size_t>(end - digits));
}

Output& Output::escaped(std::string_view text) {
  for (size_t from = 0; from <= text.size();) {
    const size_t special = text.find_first_of("\\\n\"", from);
    *this << text.substr(from, special - from);
    if (special == std::string_view::npos) break;
    *this << (text[special] == '\n' ? "\\n" : text[special] == '"' ? "\\\"" : "\\\\");
    from = special + 1;
  }
  return *this;
}

void Output::flush() {
  if (m_descriptor < 0) return;
  std::string_view rest = m_text;
  while (!rest.empty()) {
    const ssize_t count = write(m_descriptor, rest.data(), rest.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    rest.remove_prefix(static_cast<size_t>(count));
  }
  m_text.clear();
}

}  // namespace orvanta::badging
