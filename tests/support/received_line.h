#pragma once

#include <string>

/// The line that this process was started with, in UTF-8: on Windows as it was given, elsewhere, where only
/// words arrive, those joined by one blank each.
std::string receivedLine(int argc, const char* const* argv);
