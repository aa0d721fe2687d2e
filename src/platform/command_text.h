#pragma once

#include <QString>

namespace orvanta {

/// The raw text behind the program's name on the command line, empty when there is none. On POSIX, where only
/// separate arguments arrive, they are joined by one blank each; nothing else is changed.
QString commandText(int argc, const char* const* argv);

}  // namespace orvanta
