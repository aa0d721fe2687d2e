// Lies beside a test program under the names of the device's tools, notes how it was called, and does what
// the test has laid ready for such a call. Both are files in the folder that ORVANTA_STAND_IN names;
// stand_in.h writes and reads them.
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>

#include "support/received_line.h"

namespace {

using std::filesystem::path;

path pathOf(const std::string& utf8) {
  return std::u8string(utf8.begin(), utf8.end());
}

/// Whether `text` is `pattern`, in which a star stands for any text.
bool matches(std::string_view text, std::string_view pattern) {
  const size_t star = pattern.find('*');
  if (star == std::string_view::npos) return text == pattern;
  if (!text.starts_with(pattern.substr(0, star))) return false;
  for (size_t i = star; i <= text.size(); ++i) {
    if (matches(text.substr(i), pattern.substr(star + 1))) return true;
  }
  return false;
}

void note(const path& file, const std::string& line) {
  std::ofstream(file, std::ios::binary | std::ios::app) << line + '\n';
}

/// Where a pull puts what it brings: into a folder that is there already under the name on the device.
path placeOf(const std::string& remote, const path& local) {
  std::error_code noFolder;
  return is_directory(local, noFolder) ? local / pathOf(remote).filename() : local;
}

/// `name`, a line end and the content; a name that ends in a slash is a folder.
void bring(const path& place, const std::string& file) {
  const size_t end = file.find('\n');
  const path target = end == 0 ? place : place / pathOf(file.substr(0, end));
  create_directories(target.parent_path());
  if (target.has_filename()) std::ofstream(target, std::ios::binary) << file.substr(end + 1);
}

}  // namespace

int main(int argc, char** argv) {
  const char* const folder = std::getenv("ORVANTA_STAND_IN");
  if (folder == nullptr) return 2;
  std::string words;
  for (int i = 1; i < argc; ++i) words.append(i > 1 ? " " : "").append(argv[i]);
  note(pathOf(folder) / "lines", receivedLine(argc, argv));
  note(pathOf(folder) / "calls", words);

  const path place = argc > 2 ? placeOf(argv[argc - 2], pathOf(argv[argc - 1])) : path();
  std::ifstream rules(pathOf(folder) / "rules", std::ios::binary);
  bool mine = false;
  for (std::string step; std::getline(rules, step, '\0');) {
    const std::string rest = step.substr(1);
    if (step[0] == '?' && mine) break;
    if (step[0] == '?') mine = matches(words, rest);
    if (!mine) continue;
    if (step[0] == '+') bring(place, rest);
    if (step[0] == '>') std::cout << rest << std::flush;
    // A failed test leaves nothing for ever.
    if (step[0] == '~') std::this_thread::sleep_for(std::chrono::minutes(1));
  }
  return 0;
}
