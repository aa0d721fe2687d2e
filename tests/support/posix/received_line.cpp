#include "support/received_line.h"

std::string receivedLine(int argc, const char* const* argv) {
  std::string line = argv[0];
  for (int i = 1; i < argc; ++i) line.append(" ").append(argv[i]);
  return line;
}
