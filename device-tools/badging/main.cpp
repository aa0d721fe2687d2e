// A small replacement for aapt, on the headset and on the desktop: prints the badging of a package.

#include <unistd.h>

#include <string_view>
#include <vector>

#include "badging.h"

namespace {

using orvanta::badging::FileSource;
using orvanta::badging::Output;
using orvanta::badging::PathKind;

constexpr int kUsageError = 2;

int printUsage(Output& errors) {
  errors << "Usage:\n d[ump] badging file.{apk}\n   Print the label and icon for the app declared in APK.\n";
  return kUsageError;
}

}  // namespace

int main(int argc, char** argv) {
  Output output(STDOUT_FILENO);
  Output errors(STDERR_FILENO);
  std::vector<std::string_view> words;
  for (int i = 1; i < argc; ++i) {
    const std::string_view word = argv[i];
    if (i > 1 && words.size() == 1 && word.starts_with('-') && word.size() > 1)
      continue;  // changes nothing here
    words.push_back(word);
  }
  if (words.empty()) return printUsage(errors);
  if (!words[0].starts_with('d')) {
    errors << "ERROR: Unknown command '" << words[0] << "'\n";
    return printUsage(errors);
  }
  if (words.size() < 3) {
    errors << (words.size() < 2 ? "ERROR: no dump option specified\n" : "ERROR: no dump file specified\n");
    return 1;
  }
  const char* path = words[2].data();
  const PathKind kind = orvanta::badging::kindOf(path);
  if (kind == PathKind::Nothing) {
    errors << "ERROR: dump failed because assets could not be loaded\n";
    return 1;
  }
  orvanta::badging::endIfFileShrinks(
      "ERROR: dump failed because the file became shorter while it was read\n");
  FileSource source;
  if (kind == PathKind::File && !source.open(path)) {
    errors << "ERROR: dump failed because the file cannot be opened; another program may be using it\n";
    return 1;
  }
  return orvanta::badging::dump(words[1], source, output, errors);
}
