#pragma once

namespace orvanta::headset {

/// "ls" with the words and columns of the headset's own: -l -a -A -R -d -h -1 and their combinations.
/// Returns the exit code.
int listFiles(int argc, char** argv);

}  // namespace orvanta::headset
