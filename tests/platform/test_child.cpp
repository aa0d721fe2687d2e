// The subject of the runner's tests: test-child BEHAVIOUR [ARGUMENT...]. Everything is written by plain write
// calls, so that a test knows what reaches the pipe in one piece.
#include <algorithm>

#include "platform/child_steps.h"

namespace {

using steps::Arguments;
using steps::say;

/// Each argument is one write: hex digits, with "N*" in front N times them, with "2:" in front of all that to
/// the standard error. "~N" pauses N milliseconds.
void write(const Arguments& pieces) {
  for (std::string piece : pieces) {
    if (piece[0] == '~') {
      steps::sleepFor(static_cast<unsigned>(std::stoul(piece.substr(1))));
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
    say(text, toError);
  }
}

void echoWords(const Arguments& words) {
  for (const std::string& word : words) say(word + "\n");
}

void flood(const Arguments&) {
  const std::string lines(4096, '\n');
  for (;;) say(lines);
}

/// Hangs; with "child" or "stranger" a child hangs too, in the same group of processes or out of it. The
/// process in question says its number.
void hangWith(const Arguments& company) {
  if (company.empty()) {
    say(steps::ownNumber());
  } else {
    steps::startAgain({"hang"}, company[0] == "stranger");
  }
  steps::hang();
}

/// Ends at once, but for a grandchild that holds the pipe so many milliseconds and then has the last word.
void leaveGrandchild(const Arguments& milliseconds) {
  say("early\n");
  steps::startAgain({"write", '~' + milliseconds.at(0), "6c6174650a"});
}

void closeOutput(const Arguments&) {
  say(steps::ownNumber());
  steps::closeOutput();
  steps::hang();
}

void state(const Arguments&) {
  steps::state();
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
