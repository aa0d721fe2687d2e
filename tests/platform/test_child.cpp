// The subject of the runner's tests: test-child BEHAVIOUR [ARGUMENT...]. Everything is written by plain write
// calls, so that a test knows what reaches the pipe in one piece.
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using Arguments = std::vector<std::string>;

void say(const std::string& text, int fd = STDOUT_FILENO) {
  for (size_t done = 0; done < text.size();) {
    const ssize_t count = ::write(fd, text.data() + done, text.size() - done);
    if (count < 0) std::_Exit(1);
    done += static_cast<size_t>(count);
  }
}

void sleepFor(const std::string& milliseconds) {
  ::usleep(static_cast<useconds_t>(std::stoul(milliseconds) * 1000));
}

/// Does not end when asked to; after a minute by itself, so that a failed test leaves nothing for ever.
void hang() {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) ::signal(signal, SIG_IGN);
  ::alarm(60);
  for (;;) ::pause();
}

/// Each argument is one write: hex digits, with "N*" in front N times them, with "2:" in front of all that to
/// the standard error. "~N" pauses N milliseconds.
void write(const Arguments& pieces) {
  for (std::string piece : pieces) {
    if (piece[0] == '~') {
      sleepFor(piece.substr(1));
      continue;
    }
    const bool toError = piece.starts_with("2:");
    if (toError) piece.erase(0, 2);
    const size_t star = piece.find('*');
    std::string bytes;
    for (size_t i = star + 1; i < piece.size(); i += 2) {
      bytes += static_cast<char>(std::stoi(piece.substr(i, 2), nullptr, 16));
    }
    std::string text;
    for (size_t i = star == std::string::npos ? 1 : std::stoul(piece); i > 0; --i) text += bytes;
    say(text, toError ? STDERR_FILENO : STDOUT_FILENO);
  }
}

void echoWords(const Arguments& words) {
  for (const std::string& word : words) say(word + "\n");
}

void flood(const Arguments&) {
  const std::string lines(4096, '\n');
  for (;;) say(lines);
}

/// Hangs; with "child" or "stranger" a child hangs too, in the same process group or out of it. The process
/// in question says its number.
void hangWith(const Arguments& company) {
  if (company.empty() || ::fork() == 0) {
    if (!company.empty() && company[0] == "stranger") ::setsid();
    say(std::to_string(::getpid()) + "\n");
  }
  hang();
}

/// Ends at once, but for a grandchild that holds the pipe so many milliseconds and then has the last word.
void leaveGrandchild(const Arguments& milliseconds) {
  say("early\n");
  if (::fork() != 0) return;
  sleepFor(milliseconds.at(0));
  say("late\n");
}

void closeOutput(const Arguments&) {
  say(std::to_string(::getpid()) + "\n");
  ::close(STDOUT_FILENO);
  ::close(STDERR_FILENO);
  hang();
}

/// What the parent handed down: input, open descriptors, signals.
void state(const Arguments&) {
  char byte = 0;
  say("input " + std::to_string(::read(STDIN_FILENO, &byte, 1)) + "\ndescriptors");
  for (int fd = 0; fd < 1024; ++fd) {
    if (::fcntl(fd, F_GETFD) >= 0) say(' ' + std::to_string(fd));
  }
  sigset_t blocked;
  ::sigprocmask(SIG_BLOCK, nullptr, &blocked);
  say("\nblocked " + std::to_string(sigismember(&blocked, SIGUSR1)));
  say(std::string("\nignored ") + (::signal(SIGPIPE, SIG_DFL) == SIG_IGN ? "1" : "0") + "\n");
}

}  // namespace

int main(int argc, char** argv) {
  const struct {
    const char* name;
    void (*run)(const Arguments&);
  } behaviours[] = {
      {"write", write},          {"argv", echoWords},           {"flood", flood}, {"hang", hangWith},
      {"hold", leaveGrandchild}, {"close-output", closeOutput}, {"state", state},
  };
  const Arguments arguments(argv + std::min(argc, 2), argv + argc);
  for (const auto& behaviour : behaviours) {
    if (argc > 1 && behaviour.name == std::string(argv[1])) {
      behaviour.run(arguments);
      return 0;
    }
  }
  return 2;
}
