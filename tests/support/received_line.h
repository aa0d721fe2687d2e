#pragma once

#include <string>

/// The line that this process was started with, in UTF-8: on Windows as given; elsewhere, where only words
/// arrive, joined by one blank.
std::string receivedLine(int argc, const char* const* argv);
