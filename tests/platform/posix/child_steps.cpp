#include "platform/child_steps.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>

namespace steps {

void say(const std::string& text, bool toError) {
  for (size_t done = 0; done < text.size();) {
    const ssize_t count =
        ::write(toError ? STDERR_FILENO : STDOUT_FILENO, text.data() + done, text.size() - done);
    if (count < 0) std::_Exit(1);
    done += static_cast<size_t>(count);
  }
}

void sleepFor(unsigned milliseconds) {
  ::usleep(milliseconds * 1000);
}

void hang() {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) ::signal(signal, SIG_IGN);
  ::alarm(60);
  for (;;) ::pause();
}

std::string ownNumber() {
  return std::to_string(::getpid()) + "\n";
}

void startAgain(const Arguments& arguments, bool outside) {
  if (::fork() != 0) return;
  if (outside) ::setsid();
  std::string program = "test-child";
  Arguments texts = arguments;
  std::vector<char*> words = {program.data()};
  for (std::string& text : texts) words.push_back(text.data());
  words.push_back(nullptr);
  ::execv("/proc/self/exe", words.data());
  std::_Exit(1);
}

void closeOutput() {
  ::close(STDOUT_FILENO);
  ::close(STDERR_FILENO);
}

void state() {
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

}  // namespace steps
