#pragma once

#include <string>
#include <vector>

/// What the behaviours of the test child need of the operating system.
namespace steps {

using Arguments = std::vector<std::string>;

/// Writes `text` as it is, in one piece where the system can.
void say(const std::string& text, bool toError = false);

void sleepFor(unsigned milliseconds);

/// Does not end when asked to; after a minute by itself, so that a failed test leaves nothing for ever.
[[noreturn]] void hang();

/// The number of this process and a line end.
std::string ownNumber();

/// Starts this program once more with the same outputs; `outside` of the reach of whoever ends this one with
/// its children, where the system lets it.
void startAgain(const Arguments& arguments, bool outside = false);

void closeOutput();

/// Says what was handed down by the one who started this program.
void state();

}  // namespace steps
